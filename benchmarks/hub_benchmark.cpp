// What an application pays for the hub of values with 100,000 tags: reading one, and
// publishing one change to 10 subscribers; beside a QHash with a QMutex for the
// values and one more for what waits for each subscriber.
#include "host/session/valueboard.h"
#include "runtime/base/clock.h"

#include <benchmark/benchmark.h>

#include <QHash>
#include <QMutex>
#include <QWaitCondition>

#include <cstring>
#include <memory>

using namespace host;

namespace {

const int Tags = 100000;
const int Subscribers = 10;
const int Step = 7919;     // prime: visits the tags in an order that no cache foresees
const int TakeAfter = 500; // changes that wait for a subscriber before it takes them

QVector<TagDefinition> makeTags() {
    QVector<TagDefinition> tags(Tags);
    for (int i = 0; i < Tags; ++i) {
        tags[i].name = QString::fromLatin1("tag %1").arg(i);
        tags[i].type = *tagTypeByName(QStringLiteral("dword"));
    }
    return tags;
}

std::vector<TagId> allIds() {
    std::vector<TagId> ids;
    for (TagId id = 0; id < Tags; ++id)
        ids.push_back(id);
    return ids;
}

QByteArray bytesOf(int value) {
    return QByteArray(reinterpret_cast<const char*>(&value), sizeof value);
}

int numberIn(const QByteArray& data) {
    int number = 0;
    std::memcpy(&number, data.constData(), sizeof number);
    return number;
}

/** The peer: states in a hash, a hash of changes for each subscriber. */
class HashedValues {
public:
    TagState read(TagId id) {
        const QMutexLocker lock(&m_mutex);
        return m_states.value(id);
    }

    void publish(TagId id, const QByteArray& data, const Moment& when) {
        const QMutexLocker lock(&m_mutex);
        TagState& state = m_states[id];
        state.data = data;
        state.quality = Quality::Good;
        state.when = when;
        ++state.sequence;
        for (const auto& subscriber : m_subscribers)
            subscriber->post(id, state);
    }

    void subscribe() { m_subscribers.push_back(std::make_unique<Subscriber>()); }

    int takeAll() {
        int taken = 0;
        for (const auto& subscriber : m_subscribers)
            taken += subscriber->take().size();
        return taken;
    }

private:
    struct Subscriber {
        void post(TagId id, const TagState& state) {
            const QMutexLocker lock(&mutex);
            changes[id] = state;
            changed.wakeOne();
        }
        QHash<TagId, TagState> take() {
            const QMutexLocker lock(&mutex);
            QHash<TagId, TagState> taken;
            taken.swap(changes);
            return taken;
        }
        QMutex mutex; // guards changes
        QWaitCondition changed;
        QHash<TagId, TagState> changes;
    };

    QMutex m_mutex; // guards m_states
    QHash<TagId, TagState> m_states;
    std::vector<std::unique_ptr<Subscriber>> m_subscribers;
};

void oursRead(benchmark::State& state) {
    ValueBoard board(makeTags(), Clock::system());
    for (TagId id = 0; id < Tags; ++id)
        board.bring(id, bytesOf(id), {id, id});
    TagId id = 0;
    for (auto _ : state) {
        id = (id + Step) % Tags;
        if (numberIn(board.read(id).data) != id)
            state.SkipWithError("another tag's value");
    }
}

void peersRead(benchmark::State& state) {
    HashedValues values;
    for (TagId id = 0; id < Tags; ++id)
        values.publish(id, bytesOf(id), {id, id});
    TagId id = 0;
    for (auto _ : state) {
        id = (id + Step) % Tags;
        if (numberIn(values.read(id).data) != id)
            state.SkipWithError("another tag's value");
    }
}

/** Publishes a change per iteration and, outside the measured time, lets the
 *  subscribers take what waits for them. */
template <typename Publish, typename TakeAll>
void publishChanges(benchmark::State& state, Publish publish, TakeAll takeAll) {
    int value = 0;
    TagId id = 0;
    for (auto _ : state) {
        id = (id + Step) % Tags;
        publish(id, bytesOf(++value), Moment{value, value});
        if (value % TakeAfter != 0)
            continue;
        state.PauseTiming();
        if (takeAll() != TakeAfter * Subscribers)
            state.SkipWithError("changes were lost");
        state.ResumeTiming();
    }
}

void oursPublish(benchmark::State& state) {
    ValueBoard board(makeTags(), Clock::system());
    std::vector<std::shared_ptr<Mailbox>> mailboxes;
    for (int i = 0; i < Subscribers; ++i)
        mailboxes.push_back(board.subscribe(allIds(), {}));
    publishChanges(
        state,
        [&](TagId id, const QByteArray& data, const Moment& when) { board.bring(id, data, when); },
        [&] {
            std::size_t taken = 0;
            for (const auto& mailbox : mailboxes)
                taken += mailbox->take().size();
            return int(taken);
        });
}

void peersPublish(benchmark::State& state) {
    HashedValues values;
    for (int i = 0; i < Subscribers; ++i)
        values.subscribe();
    publishChanges(
        state,
        [&](TagId id, const QByteArray& data, const Moment& when) {
            values.publish(id, data, when);
        },
        [&] { return values.takeAll(); });
}

} // namespace

BENCHMARK(oursRead)->Name("hub_read/ours");
BENCHMARK(peersRead)->Name("hub_read/qhash");
BENCHMARK(oursPublish)->Name("hub_publish/ours");
BENCHMARK(peersPublish)->Name("hub_publish/qhash");
