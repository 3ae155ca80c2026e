#include "runtime/drivers/dmc50v3/transfer/ambiguousfilesselectdialog.h"

#include "runtime/base/connectchecked.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QListWidget>
#include <QVBoxLayout>

namespace {

// Widgets are found by these names in the panel's style sheets.
template <typename Widget>
Widget* named(Widget* widget, const char* name) {
    widget->setObjectName(QString::fromLatin1(name));
    return widget;
}

QFont dejaVuSans(int points) {
    return QFont(QString::fromLatin1("DejaVu Sans"), points);
}

} // namespace

ambiguousFilesSelectDialog::ambiguousFilesSelectDialog(QWidget* parent)
    : QDialog(parent), m_list(named(new QListWidget(this), "listWidget")) {
    setObjectName(QString::fromLatin1("ambiguousFilesSelectDialog"));
    resize(400, 300);
    setWindowTitle(tr("Dialog"));
    setWindowFlags(Qt::WindowStaysOnTopHint | Qt::CustomizeWindowHint);

    QLabel* label = named(new QLabel(this), "label");
    label->setFont(dejaVuSans(12));
    label->setText(tr("Please select a file to write data to DMC50:"));
    m_list->setFont(dejaVuSans(13));
    QDialogButtonBox* buttons =
        named(new QDialogButtonBox(QDialogButtonBox::Ok, Qt::Horizontal, this), "buttonBox");

    QVBoxLayout* layout = named(new QVBoxLayout(this), "verticalLayout");
    layout->addWidget(label);
    layout->addWidget(m_list);
    layout->addWidget(buttons);

    connectChecked(buttons, SIGNAL(accepted()), this, SLOT(accept()));
    connectChecked(buttons, SIGNAL(rejected()), this, SLOT(reject()));
}

void ambiguousFilesSelectDialog::addItems(const QStringList& files) {
    m_list->addItems(files);
    if (m_list->count() > 0)
        m_list->setCurrentRow(0);
}

QString ambiguousFilesSelectDialog::getFileName() const {
    const QList<QListWidgetItem*> selected = m_list->selectedItems();
    return selected.isEmpty() ? QString() : selected.first()->text();
}
