#ifndef HOST_SESSION_TAGSTATE_H
#define HOST_SESSION_TAGSTATE_H

#include <QByteArray>
#include <QString>

namespace host {

/** A tag of a hub: its place among the tags that the hub was made with. */
using TagId = int;

/** One moment on the two clocks that people ask for. */
struct Moment {
    qint64 monotonic_usecs = -1; // of the ports' microsecond clock; -1: never
    qint64 utc_msecs = -1;       // since 1970
};

/** How far a value can be trusted. */
enum class Quality {
    Good,  // the last attempt to read it brought it
    Stale, // it was read once, but the last attempts brought nothing
    Bad    // it has never been read
};

/** "good", "stale", "bad". */
inline const char* qualityName(Quality quality) {
    switch (quality) {
    case Quality::Good:
        return "good";
    case Quality::Stale:
        return "stale";
    case Quality::Bad:
        break;
    }
    return "bad";
}

/** What a hub knows of one tag. */
struct TagState {
    QByteArray data; // the tag's bytes as the driver gives them; empty: never read
    Quality quality = Quality::Bad;
    QString text;         // why it is not good: the driver's own text; empty: not tried yet
    Moment when;          // the end of the exchange that brought the data
    quint64 sequence = 0; // grows with all that is learned of the tag; 0: nothing yet
};

struct TagChange {
    TagId tag = 0;
    TagState state;
};

} // namespace host

#endif
