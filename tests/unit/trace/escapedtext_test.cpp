#include "trace/escapedtext.h"

#include <gtest/gtest.h>

using trace::escapedText;
using trace::unescapedBytes;

TEST(EscapedText, KeepsPrintableAsciiAndEscapesTheRest) {
    EXPECT_EQ(escapedText(QByteArray("\x02"
                                     "01 ~\x03\x7F\xFF\r\n")),
              QByteArray("<02>01 ~<03><7F><FF><0D><0A>"));
    EXPECT_EQ(escapedText(QByteArray(1, '\0')), QByteArray("<00>"));
    EXPECT_EQ(escapedText(QByteArray()), QByteArray());
}

TEST(EscapedText, EscapesTheAngleBracketItself) {
    EXPECT_EQ(escapedText("<02>"), QByteArray("<3C>02>"));
}

TEST(EscapedText, EveryByteComesBack) {
    QByteArray all;
    for (int byte = 0; byte < 256; ++byte)
        all += char(byte);
    EXPECT_EQ(unescapedBytes(escapedText(all)), all);
}

TEST(EscapedText, LowercaseDigitsAreUnderstood) {
    EXPECT_EQ(unescapedBytes("<ff>a"), QByteArray("\xFF"
                                                  "a"));
}

TEST(EscapedText, BrokenEscapesAreRefused) {
    for (const char* text : {"<", "<0", "<02", "<2>", "<0G>", "<002>", "a<>", "< 2>"})
        EXPECT_FALSE(unescapedBytes(text)) << text;
}
