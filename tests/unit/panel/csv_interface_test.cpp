#include "tests/unit/panel/csvtesting.h"

#include <QMetaMethod>
#include <QTextCodec>
#include <QWidget>

#include <gtest/gtest.h>

#include <cstring>

#include "runtime/base/qtcompat.h"

namespace {

QByteArray signature(const QMetaMethod& method) {
#if PANEL_QT4
    return method.signature();
#else
    return method.methodSignature();
#endif
}

/** The methods that @p meta_object adds to its base class, in order. */
QList<QByteArray> ownMethods(const QMetaObject& meta_object) {
    QList<QByteArray> result;
    for (int i = meta_object.methodOffset(); i < meta_object.methodCount(); ++i)
        result.append(signature(meta_object.method(i)));
    return result;
}

/** Byte offset of a virtual operation in its class's table, as the compilers of
 *  the panel and of the PC (one and the same C++ ABI) encode it; on ARM the
 *  mark of a virtual is elsewhere, so only differences of two are portable. */
template <class Member>
std::ptrdiff_t tableOffset(Member member) {
    std::ptrdiff_t words[2];
    static_assert(sizeof member == sizeof words, "a pointer to member is two words");
    std::memcpy(words, &member, sizeof words);
    return words[0];
}

template <class Member, class NextMember>
bool isNextInTable(Member member, NextMember next_member) {
    return tableOffset(next_member) - tableOffset(member) == std::ptrdiff_t(sizeof(void*));
}

} // namespace

TEST(CsvInterface, StartsWithTabsInMarkedUtf16) {
    QWidget parent;
    OpenLoader loader(&parent);
    EXPECT_EQ(loader.parent(), nullptr);
    EXPECT_EQ(loader.m_parent, &parent);
    EXPECT_EQ(loader.textCodec(), QTextCodec::codecForName("UTF-16LE"));
    EXPECT_TRUE(loader.m_generate_byte_order_mark);
    EXPECT_EQ(loader.delimiter(), text("\t"));
    EXPECT_EQ(loader.m_file_format, KCSVInterface::TxtFormat);
    EXPECT_EQ(loader.m_file_filter, text("Text File (*.txt)"));
    EXPECT_FALSE(loader.askFormatEachTime());
    EXPECT_EQ(loader.m_status, 0);
    EXPECT_EQ(loader.m_content, QList<QStringList>());
    EXPECT_FALSE(loader.m_delimiter_detected);
    EXPECT_TRUE(loader.m_tolerate_column_mismatch);
}

TEST(CsvInterface, SwitchesDelimiterAndFilterWithTheFormat) {
    OpenLoader loader;
    loader.setFileFormat(KCSVInterface::CsvFormat);
    EXPECT_EQ(loader.delimiter(), text(","));
    EXPECT_EQ(loader.m_file_filter, text("CSV File (*.csv)"));
    loader.setFileFormat(KCSVInterface::TxtFormat);
    EXPECT_EQ(loader.delimiter(), text("\t"));
    EXPECT_EQ(loader.m_file_filter, text("Text File (*.txt)"));
}

TEST(CsvInterface, StoresAnUnknownFormatAndChangesNothingElse) {
    OpenLoader loader;
    loader.setFileFormat(KCSVInterface::CsvFormat);
    loader.setFileFormat(KCSVInterface::FileFormat(7));
    EXPECT_EQ(int(loader.m_file_format), 7);
    EXPECT_EQ(loader.delimiter(), text(","));
    EXPECT_EQ(loader.m_file_filter, text("CSV File (*.csv)"));
}

TEST(CsvInterface, InitGoesBackToUtf16) {
    OpenLoader loader;
    loader.setCodec(QTextCodec::codecForName("Big5"));
    EXPECT_EQ(loader.textCodec(), QTextCodec::codecForName("Big5"));
    loader.init();
    EXPECT_EQ(loader.textCodec(), QTextCodec::codecForName("UTF-16LE"));
}

TEST(CsvInterface, KeepsTheOrderOfItsVirtualOperations) {
    EXPECT_TRUE(isNextInTable(&KCSVInterface::textCodec, &KCSVInterface::setCodec));
    EXPECT_TRUE(isNextInTable(&KCSVInterface::setCodec, &KCSVInterface::delimiter));
    EXPECT_TRUE(isNextInTable(&KCSVInterface::delimiter, &KCSVInterface::setDelimiter));
    EXPECT_TRUE(isNextInTable(&KCSVInterface::setDelimiter, &KCSVInterface::askFormatEachTime));
    EXPECT_TRUE(
        isNextInTable(&KCSVInterface::askFormatEachTime, &KCSVInterface::setAskFormatEachTime));
}

TEST(CsvInterface, KeepsTheOrderOfItsMetaMethods) {
    QList<QByteArray> expected;
    expected << "updateStatus(QString,QVariant)";
    EXPECT_EQ(ownMethods(KCSVInterface::staticMetaObject), expected);

    expected.clear();
    expected << "errorMessageList()"
             << "warningMessageList()"
             << "openFile(QString)"
             << "openFile()";
    EXPECT_EQ(ownMethods(KCSVLoader::staticMetaObject), expected);

    expected.clear();
    expected << "errorMessageList()"
             << "saveFile(QList<QStringList>,QString)";
    EXPECT_EQ(ownMethods(KCSVSaver::staticMetaObject), expected);
}

TEST(CsvInterface, NamesItsMetaMethodsParameters) {
    const QMetaObject& base = KCSVInterface::staticMetaObject;
    QList<QByteArray> expected;
    expected << "description"
             << "value";
    EXPECT_EQ(base.method(base.methodOffset()).parameterNames(), expected);

    const QMetaObject& saver = KCSVSaver::staticMetaObject;
    expected.clear();
    expected << "datas"
             << "fileName";
    EXPECT_EQ(saver.method(saver.methodOffset() + 1).parameterNames(), expected);
}

TEST(CsvInterface, LoadsWhenInvokedByName) {
    WorkerLoader loader;
    bool loaded = true;
    ASSERT_TRUE(QMetaObject::invokeMethod(&loader, "openFile", Qt::DirectConnection,
                                          Q_RETURN_ARG(bool, loaded)));
    EXPECT_FALSE(loaded);
    QStringList errors;
    ASSERT_TRUE(QMetaObject::invokeMethod(&loader, "errorMessageList", Qt::DirectConnection,
                                          Q_RETURN_ARG(QStringList, errors)));
    EXPECT_EQ(errors, texts({"The file name is empty."}));
}

TEST(CsvInterface, TakesTheFormatAsDeclinedWhereItCannotAsk) {
    WorkerLoader loader;
    loader.setAskFormatEachTime(true);
    EXPECT_FALSE(loader.askEachTimeCheck());
    EXPECT_FALSE(loader.openFile(text("/none")));
    EXPECT_EQ(loader.errorMessageList(),
              texts({"Import/Export File", "The import/export file will process as TXT format.",
                     "Do you want to procced?", "User canceled operation."}));

    WorkerSaver saver;
    saver.setFileFormat(KCSVInterface::CsvFormat);
    saver.setAskFormatEachTime(true);
    EXPECT_FALSE(saver.saveFile(QList<QStringList>(), text("/none")));
    EXPECT_EQ(saver.errorMessageList(),
              texts({"Import/Export File", "The import/export file will process as CSV format.",
                     "Do you want to procced?", "User canceled operation."}));
}
