#ifndef HOST_TRANSFER_RECIPEJOB_H
#define HOST_TRANSFER_RECIPEJOB_H

#include "host/transfer/recipefiles.h"
#include "host/transfer/recipeslots.h"
#include "host/transfer/recipetransfer.h"

namespace host {

class PanelOperator;

/** What is asked for. */
struct RecipeOrder {
    RecipeSlots slots_known; // of the link, for the programs that are wanted
    int program_id = 0;
    int count = RecipePrograms;
    QString stick;              // a folder that is this process's stick; empty: the mounted one
    QString file;               // of a push: which of several files; empty: there is only one
    bool ignore_labels = false; // of a push: rows may be labelled for other programs
};

/** What came of it. */
struct RecipeReport {
    QStringList problems;  // for people, one a line; none: all is well
    QString file;          // with its folder; empty: none
    QVector<int> programs; // that have arrived: in the file, or for sure in the controller

    bool ok() const { return problems.isEmpty(); }
};

/** Pulls and pushes programs through the driver, and looks after what the driver
 *  does not say: which programs a pulled file lacks, and whether the controller
 *  holds what was pushed. Thread: the link's, which is not the GUI
 * thread. */
class RecipeJob {
public:
    /** What is being done, and how far it has come. */
    using Progress = std::function<void(const char* what, int percent)>;

    /** Link, panel and clock outlive the job. */
    RecipeJob(LinkSession& link, PanelOperator& panel, const RecipeOrder& order, Progress progress,
              Clock& clock = Clock::system());

    RecipeReport pull();
    RecipeReport makeTemplate();

    /** Programs that the driver has sent are read back: a driver that reports success
     *  has only emptied its queue. */
    RecipeReport push();

    /** As RecipeTransfer::settle(): before the driver goes. */
    void settle() { m_transfer.settle(); }

private:
    TransferEnd transfer(TransferKind kind, RecipeReport& report);
    bool writeFile(TransferKind kind, const QString& file, RecipeReport& report);
    QStringList failure(const TransferEnd& end, bool is_push, bool has_log) const;
    void findMissing(RecipeReport& report) const;
    Result<QString> filePushed() const;
    void compare(const QList<QStringList>& rows, RecipeReport& report);
    QStringList differences(const QStringList& row, int number, const QByteArray& held) const;
    void checkSlots(int count, const char* result, RecipeReport& report) const;
    QString lastLineError() const;

    LinkSession& m_link;
    PanelOperator& m_panel;
    const RecipeOrder m_order;
    const QString m_folder; // of the stick; empty: there is none
    const RecipeFiles m_files;
    const Progress m_progress;
    RecipeTransfer m_transfer;
};

} // namespace host

#endif
