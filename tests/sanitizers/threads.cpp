// What ThreadSanitizer must say, and must not say, about threads that meet
// through Qt. The first argument names a case; those named Race... hold a planted
// race in our own code.
#include <QCoreApplication>
#include <QMutex>
#include <QQueue>
#include <QSemaphore>
#include <QStringList>
#include <QThread>
#include <QVector>
#include <QWaitCondition>

#include <atomic>
#include <cstdio>
#include <functional>
#include <map>
#include <memory>
#include <string>

namespace {

struct Runner : QThread {
    explicit Runner(std::function<void()> body) : m_body(std::move(body)) {}
    ~Runner() override { wait(); }
    void run() override { m_body(); }

private:
    std::function<void()> m_body;
};

void inTwoThreads(const std::function<void()>& first, const std::function<void()>& second) {
    Runner a(first), b(second);
    a.start();
    b.start();
}

int counter = 0;
QMutex mutex;

void countUnderMutex() {
    for (int i = 0; i < 300; ++i) {
        QMutexLocker lock(&mutex);
        ++counter;
        if (i % 50 == 0)
            QThread::usleep(100); // the other thread sleeps in the kernel meanwhile
    }
}

void countUnderTryLock() {
    for (int i = 0; i < 300; ++i) {
        while (!mutex.tryLock(1)) {
        }
        ++counter;
        mutex.unlock();
    }
}

void countUnguarded() {
    for (int i = 0; i < 20000; ++i)
        ++counter;
}

void mutexes() {
    inTwoThreads(countUnderMutex, countUnderTryLock);
}

void recursiveMutex() {
    QMutex recursive(QMutex::Recursive);
    const auto count = [&recursive] {
        for (int i = 0; i < 300; ++i) {
            QMutexLocker outer(&recursive);
            QMutexLocker inner(&recursive);
            ++counter;
        }
    };
    inTwoThreads(count, count);
}

void sharedContainers() {
    QVector<int> numbers(100, 1);
    QString text = QString::fromLatin1("shared");
    const auto exchange = [&] {
        for (int i = 0; i < 1000; ++i) {
            QMutexLocker lock(&mutex);
            QVector<int> my_numbers = numbers;
            QString my_text = text;
            lock.unlock();
            my_numbers[3] = i;
            my_text[0] = QChar::fromLatin1('a');
            lock.relock();
            numbers = my_numbers;
            text = my_text;
        }
    };
    inTwoThreads(exchange, exchange);
}

void waitConditions() {
    QWaitCondition changed;
    QQueue<QByteArray> queue;
    inTwoThreads(
        [&] {
            for (int i = 0; i < 1000; ++i) {
                QMutexLocker lock(&mutex);
                queue.enqueue(QByteArray(10, 'x'));
                changed.wakeOne();
            }
        },
        [&] {
            for (int i = 0; i < 1000; ++i) {
                QMutexLocker lock(&mutex);
                while (queue.isEmpty())
                    changed.wait(&mutex, 1);
                queue.dequeue()[0] = 'y';
            }
        });
}

void semaphores() {
    QSemaphore semaphore;
    Runner taker([&semaphore] {
        semaphore.acquire();
        ++counter;
    });
    taker.start();
    ++counter;
    semaphore.release();
}

void startAndWait() {
    for (int i = 0; i < 100; ++i) {
        std::unique_ptr<QVector<int>> numbers(new QVector<int>(100, i));
        Runner runner([&numbers] { numbers->append(1); });
        runner.start();
        runner.wait();
        counter += numbers->size();
    }
}

void isFinishedPolled() {
    Runner runner([] { ++counter; });
    runner.start();
    while (!runner.isFinished())
        QThread::yieldCurrentThread();
    ++counter;
}

class Receiver : public QObject {
    Q_OBJECT
public slots:
    void take(const QVector<int>& numbers) {
        for (int number : numbers)
            m_sum += number;
        emit taken(m_sum);
    }
    void touchCounter() {
        ++counter;
        m_touched.fetch_add(1, std::memory_order_relaxed); // orders nothing
    }

signals:
    void taken(int sum);

public:
    int m_sum = 0;
    std::atomic<int> m_touched{0};
};

class Sender : public QObject {
    Q_OBJECT
public:
    int m_answers = 0;
public slots:
    void answer(int) { ++m_answers; }
signals:
    void numbers(const QVector<int>& values);
};

/** A receiver in a thread of its own. */
struct ReceiverThread {
    ReceiverThread() {
        m_receiver->moveToThread(&m_thread);
        QObject::connect(&m_thread, SIGNAL(finished()), m_receiver, SLOT(deleteLater()));
        m_thread.start();
    }
    ~ReceiverThread() {
        m_thread.quit();
        m_thread.wait();
    }
    QThread m_thread;
    Receiver* m_receiver = new Receiver; // deletes itself at the thread's end
};

void queuedSignals() {
    ReceiverThread other;
    Sender sender;
    QObject::connect(&sender, SIGNAL(numbers(QVector<int>)), other.m_receiver,
                     SLOT(take(QVector<int>)));
    QObject::connect(other.m_receiver, SIGNAL(taken(int)), &sender, SLOT(answer(int)));
    for (int i = 0; i < 1000; ++i) {
        QVector<int> values(20, i);
        emit sender.numbers(values);
        values[0] = 1;
    }
    while (sender.m_answers < 1000)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
}

void blockingSignals() {
    ReceiverThread other;
    Sender sender;
    QObject::connect(&sender, SIGNAL(numbers(QVector<int>)), other.m_receiver,
                     SLOT(take(QVector<int>)), Qt::BlockingQueuedConnection);
    for (int i = 0; i < 300; ++i) {
        emit sender.numbers(QVector<int>(3, i));
        counter += other.m_receiver->m_sum;
    }
}

void blockingInvocations() {
    ReceiverThread other;
    for (int i = 0; i < 300; ++i) {
        ++counter;
        QMetaObject::invokeMethod(other.m_receiver, "touchCounter", Qt::BlockingQueuedConnection);
        QMetaObject::invokeMethod(
            other.m_receiver, [] { ++counter; }, Qt::BlockingQueuedConnection);
    }
}

void raceUnguarded() {
    inTwoThreads(countUnguarded, countUnguarded);
}

void raceOneSideUnguarded() {
    inTwoThreads(countUnderMutex, countUnguarded);
}

void raceUnderTwoMutexes() {
    QMutex other;
    inTwoThreads(countUnderMutex, [&other] {
        for (int i = 0; i < 300; ++i) {
            QMutexLocker lock(&other);
            ++counter;
        }
    });
}

void raceInAVector() {
    QVector<int> numbers(10, 0);
    const auto fill = [&numbers] {
        for (int i = 0; i < 20000; ++i)
            numbers[3] = i;
    };
    inTwoThreads(fill, fill);
}

void raceWithASlot() {
    ReceiverThread other;
    while (other.m_receiver->m_touched.load(std::memory_order_relaxed) < 100) {
        QMetaObject::invokeMethod(other.m_receiver, "touchCounter", Qt::QueuedConnection);
        ++counter;
    }
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    qRegisterMetaType<QVector<int>>("QVector<int>");
    const std::map<std::string, void (*)()> cases = {
        {"Mutexes", mutexes},
        {"RecursiveMutex", recursiveMutex},
        {"SharedContainers", sharedContainers},
        {"WaitConditions", waitConditions},
        {"Semaphores", semaphores},
        {"StartAndWait", startAndWait},
        {"IsFinishedPolled", isFinishedPolled},
        {"QueuedSignals", queuedSignals},
        {"BlockingSignals", blockingSignals},
        {"BlockingInvocations", blockingInvocations},
        {"RaceUnguarded", raceUnguarded},
        {"RaceOneSideUnguarded", raceOneSideUnguarded},
        {"RaceUnderTwoMutexes", raceUnderTwoMutexes},
        {"RaceInAVector", raceInAVector},
        {"RaceWithASlot", raceWithASlot},
    };
    const auto found = argc > 1 ? cases.find(argv[1]) : cases.end();
    if (found == cases.end()) {
        std::fprintf(stderr, "usage: %s CASE\n", argv[0]);
        return 2;
    }
    found->second();
    return 0;
}

#include "threads.moc"
