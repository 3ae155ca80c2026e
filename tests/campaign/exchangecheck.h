#ifndef TESTS_CAMPAIGN_EXCHANGECHECK_H
#define TESTS_CAMPAIGN_EXCHANGECHECK_H

#include "tests/campaign/errorcheck.h"
#include "tests/campaign/tagbook.h"
#include "tests/campaign/verdict.h"
#include "tests/campaign/virtualline.h"
#include "tests/campaign/watchedport.h"
#include "tests/campaign/writebook.h"

namespace campaign {

/** Judges every exchange of the driver: what it takes for good against what the
 *  controllers held, what it reports against the faults that were made. */
class ExchangeCheck : public ExchangeWatcher {
public:
    ExchangeCheck(VirtualLine& line, TagBook& tags, WriteBook& writes, Figures& figures,
                  Verdict& verdict);

    void beginning() override;
    void requested(const QByteArray& request) override;
    bool replied(const SeenExchange& exchange) override;

    /** What the driver reports while it is in error. */
    QString errorText() const { return m_errors.text(); }

    /** Called before every exchange. */
    void setOnBeginning(const std::function<void()>& hook) { m_on_beginning = hook; }

private:
    void takeValues(const SeenExchange& exchange, const std::vector<quint32>& values);
    void judgeWrite(const SeenExchange& exchange, bool good);
    void suspect(const SeenExchange& exchange, const QString& text);

    VirtualLine& m_line;
    TagBook& m_tags;
    WriteBook& m_writes;
    Figures& m_figures;
    Verdict& m_verdict;
    ErrorCheck m_errors;
    simulator::Request m_request; // the present one
    std::function<void()> m_on_beginning;
};

} // namespace campaign

#endif
