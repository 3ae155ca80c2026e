#ifndef HOST_LINE_QUESTION_H
#define HOST_LINE_QUESTION_H

#include <QByteArray>

#include <optional>
#include <vector>

namespace host {

/** What a request asks, as far as it tells which reply is its answer. Requests of
 *  other protocols than CPL ask nothing that is known here. */
struct Question {
    int station = 0;
    QByteArray subaddress; // its two characters
    bool is_write = false;
    std::vector<quint32> addresses; // of the double words, in the request's order

    /** Double words that the answer carries: none after a write. */
    int values() const { return is_write ? 0 : int(addresses.size()); }

    /** Characters of the answer. */
    int replyLength() const;
};

std::optional<Question> readQuestion(const QByteArray& request);

/** A request to the station of @p question for @p count double words at its
 *  addresses, from the first on, again and again where they are fewer. */
QByteArray makeReadRequest(const Question& question, int count);

/** One frame of a controller that is whole: start, station, sub-address, device,
 *  end code, data of whole double words, ETX, checksum, CR LF, and nothing
 *  else. */
struct WholeReply {
    int station = 0;
    QByteArray subaddress;
    int values = 0;
    bool refused = false; // an end code other than 00
};

std::optional<WholeReply> readWholeReply(const QByteArray& bytes);

/** True if @p reply answers @p question: with as many values as it asks for, or
 *  by refusing it. */
bool isAnswer(const WholeReply& reply, const Question& question);

/** True if the driver, which knows no lengths, takes @p bytes for the good answer
 *  of @p station: 13 characters or more whose sum, station and end code are
 *  right. */
bool passesForGood(const QByteArray& bytes, int station);

/** How many characters of a reply the driver calls a loss. */
constexpr int LossLength = 12;

} // namespace host

#endif
