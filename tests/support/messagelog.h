#ifndef TESTS_SUPPORT_MESSAGELOG_H
#define TESTS_SUPPORT_MESSAGELOG_H

#include <QString>
#include <QStringList>

/** While it lives, Qt's messages of every thread are kept here instead of being
 *  printed. One at a time. */
class MessageLog {
public:
    MessageLog();
    ~MessageLog();
    MessageLog(const MessageLog&) = delete;
    MessageLog& operator=(const MessageLog&) = delete;

    QStringList messages() const;

    /** Whether a message contains @p text. */
    bool contains(const char* text) const;
};

#endif
