#include "tests/campaign/exchangecheck.h"

#include "runtime/drivers/dmc50v3/cplreply.h"
#include "runtime/drivers/dmc50v3/dmc50_cpl.h"

#include <algorithm>

namespace campaign {

namespace {

constexpr int DataOffset = 8;

/** As the driver keeps a reply: NULs stand behind it. */
class KeptReply {
public:
    explicit KeptReply(const QByteArray& bytes) : m_length(std::min(bytes.size(), CPLBufferSize)) {
        m_bytes.fill('\0');
        std::copy_n(bytes.begin(), m_length, m_bytes.begin());
    }
    CPLReply reply() const { return {m_bytes.data(), m_length}; }

private:
    std::array<char, CPLBufferSize> m_bytes = {};
    const int m_length;
};

/** The frame that @p request asks for, whatever its data. */
bool hasShape(const QByteArray& reply, const simulator::Request& request) {
    const bool reads = request.command == simulator::Command::ReadList;
    const int digits = reads ? CPLDWordDigits * int(request.addresses.size()) : 0;
    if (reply.size() != CPLMinResponseLength + digits || reply.at(DataOffset + digits) != '\x03' ||
        !reply.startsWith('\x02') || !reply.endsWith("\r\n"))
        return false;
    return std::all_of(reply.begin() + DataOffset, reply.begin() + DataOffset + digits,
                       [](char c) { return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'F'); });
}

} // namespace

ExchangeCheck::ExchangeCheck(VirtualLine& line, TagBook& tags, WriteBook& writes, Figures& figures,
                             Verdict& verdict)
    : m_line(line)
    , m_tags(tags)
    , m_writes(writes)
    , m_figures(figures)
    , m_verdict(verdict)
    , m_errors(line.faults()) {}

void ExchangeCheck::beginning() {
    if (m_on_beginning)
        m_on_beginning();
}

void ExchangeCheck::requested(const QByteArray& request) {
    ++m_figures.exchanges;
    const simulator::ParsedRequest parsed = simulator::parseRequest(request);
    if (parsed.state != simulator::ParsedRequest::State::Good)
        m_verdict.fail(QStringLiteral("the driver sends what is no request"));
    m_request = parsed.request;
    m_verdict.fail(m_writes.requested(m_request));
}

bool ExchangeCheck::replied(const SeenExchange& exchange) {
    const KeptReply kept(exchange.reply);
    const bool reads = m_request.command == simulator::Command::ReadList;
    const quint32 first = m_request.addresses.empty() ? 0 : m_request.addresses.front();
    QString text;
    const bool good = reads ? checkReadRsp(kept.reply(), m_request.station, first, text)
                            : checkWriteRsp(kept.reply(), m_request.station, first, text);
    if (!good) {
        ++m_figures.failed_exchanges;
        m_verdict.fail(m_errors.failed(m_request.station, exchange.sent, text));
    }
    if (!reads) {
        judgeWrite(exchange, good);
    } else if (good) {
        std::vector<quint32> values;
        for (int i = 0; i < int(m_request.addresses.size()); ++i)
            values.push_back(getDWordFromRsp(kept.reply(), i));
        takeValues(exchange, values);
    }
    if (good)
        m_errors.succeeded(m_request.station, exchange.sent);
    return good;
}

void ExchangeCheck::takeValues(const SeenExchange& exchange, const std::vector<quint32>& values) {
    ++m_figures.good_reads;
    bool wrong = false;
    for (std::size_t i = 0; i < values.size(); ++i) {
        const quint32 address = m_request.addresses[i];
        Tag* const tag = m_tags.find(m_request.station, address);
        if (!tag)
            continue;
        tag->bring(values[i], exchange.done);
        ++m_figures.values;
        if (wrong || m_line.controller(m_request.station)
                         .held(address, values[i], exchange.sent, exchange.done))
            continue;
        wrong = true;
        suspect(exchange, QString::fromLatin1("wrong value %1 of %2 of station %3")
                              .arg(values[i], 8, 16, QLatin1Char('0'))
                              .arg(address, 0, 16)
                              .arg(m_request.station));
    }
}

void ExchangeCheck::judgeWrite(const SeenExchange& exchange, bool good) {
    const QString wrong = m_writes.answered(good);
    if (!wrong.isEmpty())
        suspect(exchange, wrong);
}

/** A frame that no station has sent, yet has the shape and the sum of the answer:
 *  nothing in it tells that it was damaged. */
void ExchangeCheck::suspect(const SeenExchange& exchange, const QString& text) {
    if (hasShape(exchange.reply, m_request) && !m_line.isGenuine(exchange.reply))
        ++m_figures.undetectable;
    else
        m_verdict.fail(text);
}

} // namespace campaign
