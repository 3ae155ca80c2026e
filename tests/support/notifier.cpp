#include "tests/support/notifier.h"

#include "runtime/base/connectchecked.h"

Notifier::Notifier(const QObject& panel, Qt::ConnectionType type) {
    connectChecked(this, SIGNAL(notice(QString, QString, bool)), &panel,
                   SLOT(showMessageAsync(QString, QString, bool)), type);
    connectChecked(this, SIGNAL(takenBack()), &panel, SLOT(removeMessageAsync()), type);
}

void Notifier::tell(const char* title, const char* text, bool show_instant) {
    tell(QString::fromUtf8(title), QString::fromUtf8(text), show_instant);
}

void Notifier::tell(const QString& title, const QString& text, bool show_instant) {
    emit notice(title, text, show_instant);
}

void Notifier::takeBack() {
    emit takenBack();
}
