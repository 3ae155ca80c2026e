// The message panel's entries and whose they are.
#include "runtime/panel/messagecenter.h"

#include "runtime/base/connectchecked.h"
#include "runtime/panel/messagecenteritemwidget.h"
#include "runtime/panel/messagecenterlistwidget.h"

namespace {

const int MaxEntries = 100;
const int WidgetInset = 5; // an entry's widget is narrower than the list

QList<QColor> standardItemColors() {
    return QList<QColor>() << QColor(255, 255, 255) << QColor(255, 255, 204)
                           << QColor(255, 204, 204) << QColor(204, 255, 255)
                           << QColor(204, 204, 255) << QColor(204, 255, 204)
                           << QColor(255, 204, 153);
}

// Not a class member: a plug-in that carries the panel too would share the
// symbol with its host, and its own start-up and unloading would construct and
// destroy the host's list a second time.
const QList<QColor> StandardItemColor = standardItemColors();

} // namespace

int MessageCenter::ColorIndex = 0;

void MessageCenter::showMessageAsync(QString title, QString text, bool showInstant) {
    if (!rejectMessage)
        _showMessage(sender(), title, text, showInstant);
}

void MessageCenter::_showMessage(QObject* send, QString title, QString text, bool showInstant) {
    const QString message = QString::fromLatin1("%1\n%2").arg(title, text);
    if (QListWidgetItem* known = senderItems.value(send)) {
        static_cast<MessageCenterItemWidget*>(ui.list->itemWidget(known))->setMessage(message);
    } else {
        QListWidgetItem* added = addEntry(message);
        senderItems[send] = added;
        dropOldestEntry();
    }
    if (showInstant)
        instantShow();
    else
        _showWrapper();
    ui.list->determineScrollVisible();
}

/** Puts a new entry in row 0; the list owns it. */
QListWidgetItem* MessageCenter::addEntry(const QString& message) {
    QListWidgetItem* item = new QListWidgetItem;
    item->setBackground(StandardItemColor.at(ColorIndex));
    ColorIndex = (ColorIndex + 1) % StandardItemColor.size();

    MessageCenterItemWidget* widget = new MessageCenterItemWidget;
    item->setSizeHint(widget->size()); // the form's size, not yet the entry's
    widget->setMessage(message);
    widget->setFixedSize(ui.list->width() - WidgetInset, MessageEntryHeight);

    ui.list->insertItem(0, item);
    ui.list->setItemWidget(item, widget);
    connectChecked(widget, SIGNAL(removeClicked()), this, SLOT(itemWidgetRemoveClicked()));
    adjustSize();
    return item;
}

/** The oldest entry makes room. Its sender stays known, without an item: the
 *  next notice from it makes a new entry. */
void MessageCenter::dropOldestEntry() {
    if (ui.list->count() <= MaxEntries)
        return;
    QListWidgetItem* oldest = ui.list->takeItem(ui.list->count() - 1);
    const SenderItems::iterator found = findSender(oldest);
    if (found != senderItems.end())
        found.value() = nullptr;
    delete oldest;
}

void MessageCenter::removeMessageAsync() {
    QObject* const source = sender(); // asked once: it may be deleted at any time
    if (!source || !senderItems.contains(source))
        return;
    blockSignals(true);
    delete senderItems.take(source); // takes itself out of the list
    adjustSize();
    blockSignals(false);
}

void MessageCenter::itemWidgetRemoveClicked() {
    blockSignals(true);
    const int row = rowOf(sender());
    if (row >= 0) {
        QListWidgetItem* item = ui.list->takeItem(row); // its widget goes with deleteLater()
        const SenderItems::iterator found = findSender(item);
        if (found != senderItems.end())
            senderItems.erase(found);
        delete item;
        adjustSize();
    }
    ui.list->determineScrollVisible();
    blockSignals(false);
    restartAutoHide();
}

/** The row whose item widget is @p widget, or -1. */
int MessageCenter::rowOf(const QObject* widget) const {
    int row = ui.list->count() - 1;
    while (row >= 0 && ui.list->itemWidget(ui.list->item(row)) != widget)
        --row;
    return row;
}

MessageCenter::SenderItems::iterator MessageCenter::findSender(const QListWidgetItem* item) {
    SenderItems::iterator it = senderItems.begin();
    while (it != senderItems.end() && it.value() != item)
        ++it;
    return it;
}

void MessageCenter::testMessage() {
    _showMessage(this, QLatin1String("test"), QLatin1String("sdfsdf"), true);
}
