#ifndef HOST_SESSION_POLLEDSTATION_H
#define HOST_SESSION_POLLEDSTATION_H

#include "host/project/project.h"
#include "host/session/tagstate.h"

#include <optional>
#include <vector>

namespace host {

/** The double words of one station that the driver keeps fresh, and the tags that
 *  are made of them. The driver asks for them in ascending order, in frames of at
 *  most FrameAddresses; here a frame is known by its number. One thread. */
class PolledStation {
public:
    static constexpr int FrameAddresses = 50;

    struct Tag {
        TagId id = 0;
        const TagDefinition* definition = nullptr; // of controller data
    };

    /** Double words at consecutive addresses. */
    struct Run {
        quint32 address = 0;
        int dwords = 0;
    };

    /** The definitions outlive it. */
    explicit PolledStation(const std::vector<Tag>& tags);

    /** The frame that holds just @p addresses. */
    std::optional<int> frameOf(const std::vector<quint32>& addresses) const;

    /** The frame that begins with @p address. */
    std::optional<int> frameAt(quint32 address) const;

    /** The runs that make up @p frame, in its order. */
    std::vector<Run> runs(int frame) const;

    /** @p dwords: the bytes of the whole frame, as the runs give them. */
    void store(int frame, const QByteArray& dwords, const Moment& when);

    /** A tag as it is known now. */
    struct Value {
        TagId id = 0;
        QByteArray data;
        Moment when; // of its oldest part
    };

    /** The tags whose last double word is in @p frame and whose others are known, too:
     *  a scan that has just brought it has brought all of them. */
    std::vector<Value> values(int frame);

    /** All tags that have a part in @p frame. */
    std::vector<TagId> tags(int frame) const;

private:
    struct Placed {
        Tag tag;
        int first = 0; // place of its first double word
        int dwords = 0;
        QByteArray data; // of what was stored last; empty: not made yet
        int last() const { return first + dwords - 1; }
    };

    int placeOf(quint32 address) const;
    int endOf(int frame) const;
    Moment oldestPart(const Placed& placed) const;

    std::vector<quint32> m_addresses; // ascending, unique
    QByteArray m_dwords;              // 4 bytes each, in that order
    std::vector<Moment> m_when;       // of each
    std::vector<Placed> m_tags;
    std::vector<std::vector<int>> m_parts; // by frame: which of m_tags have a part in it
};

} // namespace host

#endif
