#include "runtime/interfaces/devicesetting.h"

#include "tests/support/messagelog.h"

#include <QDataStream>

#include <gtest/gtest.h>

#include <cstddef>

namespace {

typedef QPair<QString, quint16> Endpoint;

QString text(const char* latin1) {
    return QString::fromLatin1(latin1);
}

DeviceSetting serialPort() {
    return DeviceSetting(DEVICE_RS485, text("COM2"), 38400, 8, 0, 2);
}

DeviceSetting withEndpoints(int count) {
    DeviceSetting setting = serialPort();
    for (int i = 0; i < count; ++i)
        setting.endpoints.append(Endpoint(text("10.0.0.%1").arg(i), quint16(500 + i)));
    return setting;
}

QByteArray streamed(const DeviceSetting& setting) {
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << setting;
    return bytes;
}

QDataStream::Status read(const QByteArray& bytes, DeviceSetting& setting) {
    QDataStream stream(bytes);
    stream >> setting;
    return stream.status();
}

} // namespace

TEST(DeviceSetting, HasTheHostsLayout) {
    struct HostSetting {
        int type;
        QString string;
        int baudrate, databits, stopbits, parity, number;
        QString text;
        int link_id, current_index;
        QList<Endpoint> endpoints;
    };
    EXPECT_EQ(sizeof(DeviceSetting), sizeof(HostSetting));
    EXPECT_EQ(offsetof(DeviceSetting, type), 0U);
    EXPECT_EQ(offsetof(DeviceSetting, string), offsetof(HostSetting, string));
    EXPECT_EQ(offsetof(DeviceSetting, baudrate), offsetof(HostSetting, baudrate));
    EXPECT_EQ(offsetof(DeviceSetting, databits), offsetof(HostSetting, databits));
    EXPECT_EQ(offsetof(DeviceSetting, stopbits), offsetof(HostSetting, stopbits));
    EXPECT_EQ(offsetof(DeviceSetting, parity), offsetof(HostSetting, parity));
    EXPECT_EQ(offsetof(DeviceSetting, number), offsetof(HostSetting, number));
    EXPECT_EQ(offsetof(DeviceSetting, text), offsetof(HostSetting, text));
    EXPECT_EQ(offsetof(DeviceSetting, linkID), offsetof(HostSetting, link_id));
    EXPECT_EQ(offsetof(DeviceSetting, currentIndex), offsetof(HostSetting, current_index));
    EXPECT_EQ(offsetof(DeviceSetting, endpoints), offsetof(HostSetting, endpoints));
}

TEST(DeviceSetting, IsMadeWithoutLinkAndEndpoints) {
    const DeviceSetting setting = serialPort();
    EXPECT_EQ(setting.type, 0x40);
    EXPECT_EQ(setting.string, text("COM2"));
    EXPECT_EQ(setting.baudrate, 38400);
    EXPECT_EQ(setting.databits, 8);
    EXPECT_EQ(setting.stopbits, 0);
    EXPECT_EQ(setting.parity, 2);
    EXPECT_EQ(setting.number, 0);
    EXPECT_TRUE(setting.text.isEmpty());
    EXPECT_EQ(setting.linkID, -1);
    EXPECT_EQ(setting.currentIndex, 0);
    EXPECT_TRUE(setting.endpoints.isEmpty());
}

TEST(DeviceSetting, KeepsTheSeventhAndEighthValueOfEight) {
    const DeviceSetting setting(DEVICE_RS232, text("COM1"), 9600, 7, 1, 2, 17, text("more"));
    EXPECT_EQ(setting.number, 17);
    EXPECT_EQ(setting.text, text("more"));
    EXPECT_EQ(setting.linkID, -1);
    EXPECT_EQ(setting.currentIndex, 0);
    EXPECT_TRUE(setting.endpoints.isEmpty());
}

TEST(DeviceSetting, NamesAnEndpointOrTheCurrentOne) {
    DeviceSetting setting = withEndpoints(3);
    setting.setCurrentIPIndex(1);
    EXPECT_EQ(setting.socketIP(2), text("10.0.0.2"));
    EXPECT_EQ(setting.port(2), 502);
    EXPECT_EQ(setting.socketIP(), text("10.0.0.1"));
    EXPECT_EQ(setting.port(-1), 501);
}

TEST(DeviceSetting, HasNoAddressWhereThereIsNoEndpoint) {
    for (int i : {-2, -1, 0, 1}) {
        EXPECT_TRUE(serialPort().socketIP(i).isEmpty());
        EXPECT_EQ(serialPort().port(i), 0);
    }
}

TEST(DeviceSetting, ChangesAnEndpointOrTheCurrentOne) {
    DeviceSetting setting = withEndpoints(2);
    setting.setCurrentIPIndex(1);
    setting.setSocketIP(text("a"), 0);
    setting.setPort(1, 0);
    setting.setSocketIP(text("b"));
    setting.setPort(2);
    EXPECT_EQ(setting.endpoints.at(0), Endpoint(text("a"), 1));
    EXPECT_EQ(setting.endpoints.at(1), Endpoint(text("b"), 2));
}

TEST(DeviceSetting, NeverAddsAnEndpoint) {
    DeviceSetting none = serialPort();
    DeviceSetting one = withEndpoints(1);
    for (int i : {-2, -1, 1, 2}) {
        none.setSocketIP(text("a"), i);
        none.setPort(1, i);
        if (i != -1) {
            one.setSocketIP(text("a"), i);
            one.setPort(1, i);
        }
    }
    EXPECT_TRUE(none.endpoints.isEmpty());
    EXPECT_EQ(one.endpoints, withEndpoints(1).endpoints);
}

TEST(DeviceSetting, TakesOnlyAnIndexOfAnEndpoint) {
    DeviceSetting setting = withEndpoints(2);
    setting.setCurrentIPIndex(1);
    for (int i : {-1, 2, 100})
        setting.setCurrentIPIndex(i);
    EXPECT_EQ(setting.currentIndex, 1);
    setting.setCurrentIPIndex(0);
    EXPECT_EQ(setting.currentIndex, 0);
}

TEST(DeviceSetting, IsStoredInTheOrderOfStoredProjects) {
    DeviceSetting setting(DEVICE_RS485, text("C"), 38400, 8, 0, 2, 17, text("not stored"));
    setting.linkID = 5;
    setting.endpoints.append(Endpoint(text("h"), 502));
    EXPECT_EQ(streamed(setting).toHex(),
              QByteArray("00000040"
                         "00000002"
                         "0043" // type, name
                         "00009600"
                         "00000008"
                         "00000000"
                         "00000002" // line
                         "00000011"
                         "00000005"
                         "00000000" // seventh, link, index
                         "00000001"
                         "00000002"
                         "0068"
                         "01f6")); // endpoints
}

TEST(DeviceSetting, ReadsBackAllButTheEighthField) {
    DeviceSetting written(DEVICE_RS422, text("COM3"), 9600, 7, 1, 1, 17, text("not stored"));
    written.linkID = 5;
    written.endpoints = withEndpoints(2).endpoints;

    DeviceSetting setting(DEVICE_RS485, text("COM2"), 38400, 8, 0, 2, 0, text("mine"));
    EXPECT_EQ(read(streamed(written), setting), QDataStream::Ok);
    EXPECT_EQ(setting.type, DEVICE_RS422);
    EXPECT_EQ(setting.string, text("COM3"));
    EXPECT_EQ(setting.baudrate, 9600);
    EXPECT_EQ(setting.databits, 7);
    EXPECT_EQ(setting.stopbits, 1);
    EXPECT_EQ(setting.parity, 1);
    EXPECT_EQ(setting.number, 17);
    EXPECT_EQ(setting.linkID, 5);
    EXPECT_EQ(setting.endpoints, written.endpoints);
    EXPECT_EQ(setting.text, text("mine"));
}

TEST(DeviceSetting, KeepsIndexZeroWhateverWasStoredWhenItHadNoEndpoints) {
    DeviceSetting written = withEndpoints(3);
    written.setCurrentIPIndex(2);
    DeviceSetting setting = serialPort();
    EXPECT_EQ(read(streamed(written), setting), QDataStream::Ok);
    EXPECT_EQ(setting.currentIndex, 0);
    EXPECT_EQ(setting.endpoints.size(), 3);
}

TEST(DeviceSetting, ChecksAStoredIndexAgainstTheEndpointsItHadBefore) {
    DeviceSetting written = withEndpoints(1);
    written.currentIndex = 2;

    DeviceSetting fits = withEndpoints(3);
    EXPECT_EQ(read(streamed(written), fits), QDataStream::Ok);
    EXPECT_EQ(fits.currentIndex, 2); // now behind its one endpoint
    EXPECT_TRUE(fits.socketIP().isEmpty());

    DeviceSetting too_small = withEndpoints(2);
    too_small.setCurrentIPIndex(1);
    EXPECT_EQ(read(streamed(written), too_small), QDataStream::Ok);
    EXPECT_EQ(too_small.currentIndex, 1);
}

TEST(DeviceSetting, TakesOnlyWholeEndpointsFromATruncatedStream) {
    const QByteArray whole = streamed(withEndpoints(2));
    for (int size = 0; size < whole.size(); ++size) {
        DeviceSetting setting = withEndpoints(3);
        EXPECT_EQ(read(whole.left(size), setting), QDataStream::ReadPastEnd) << size;
        ASSERT_LE(setting.endpoints.size(), 1) << size;
        if (!setting.endpoints.isEmpty()) {
            EXPECT_EQ(setting.endpoints.at(0), Endpoint(text("10.0.0.0"), 500));
        }
    }
}

TEST(DeviceSetting, DoesNotBelieveACountThatTheStreamCannotHold) {
    const int count_at = streamed(serialPort()).size() - 4;
    for (const char* count : {"7fffffff", "ffffffff", "80000000"}) {
        const QByteArray bytes =
            streamed(withEndpoints(1)).replace(count_at, 4, QByteArray::fromHex(count));
        DeviceSetting setting = serialPort();
        const bool negative = count[0] != '7';
        EXPECT_EQ(read(bytes, setting), negative ? QDataStream::Ok : QDataStream::ReadPastEnd);
        EXPECT_EQ(setting.endpoints.size(), negative ? 0 : 1);
    }
}

TEST(DeviceSetting, DumpsOneLine) {
    DeviceSetting setting = withEndpoints(1);
    setting.linkID = 5;
    const MessageLog log;
    setting.dump();
    ASSERT_EQ(log.messages().size(), 1);
    EXPECT_EQ(log.messages().first().trimmed(),
              text("type: 64 string: \"COM2\" baudrate: 38400 databits: 8 stopbits: 0 parity: 2 "
                   "linkID: 5 current ip: \"10.0.0.0\" current port: 500"));
}
