#ifndef APPS_DMC50PANEL_MESSAGESVIEW_H
#define APPS_DMC50PANEL_MESSAGESVIEW_H

#include "apps/dmc50panel/view.h"

#include "runtime/panel/messagecenter.h"

#include <QThread>
#include <QWidget>

class NoticeSender;

/** The message panel beside a bar of a screen like the operator's, with sample
 *  notices in English and Chinese from three worker threads. */
class MessagesView : public View {
    Q_OBJECT

public:
    explicit MessagesView(const Options& options);
    ~MessagesView() override;

    void show() override;
    QPixmap picture() override;

private:
    struct Worker {
        std::unique_ptr<NoticeSender> sender; // lives in the thread
        std::unique_ptr<QThread> thread;
    };

    void buildScreen(int edge);
    void addWorker(const QString& title, const QStringList& texts, int period_msecs);
    void countFirstNotice();

    QWidget m_screen;
    QWidget* m_bar; // a child of the screen, along one of its sides
    std::unique_ptr<MessageCenter> m_panel;
    std::vector<Worker> m_workers;
    size_t m_first_notices = 0;
};

#endif
