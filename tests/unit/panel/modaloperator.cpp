#include "tests/unit/panel/modaloperator.h"

#include "runtime/base/connectchecked.h"

#include <QAbstractButton>
#include <QApplication>
#include <QFileDialog>
#include <QLineEdit>
#include <QPushButton>

#include <gtest/gtest.h>

ModalOperator::ModalOperator() {
    connectChecked(&m_look, SIGNAL(timeout()), this, SLOT(look()));
    m_look.start(1);
}

ModalOperator::~ModalOperator() {
    EXPECT_TRUE(m_answers.isEmpty()) << "a dialog that was expected never came";
}

void ModalOperator::willPress(QMessageBox::StandardButton button) {
    m_answers.append(Answer{button, QString()});
}

void ModalOperator::willPick(const QString& file_name) {
    m_answers.append(Answer{QMessageBox::NoButton, file_name});
}

void ModalOperator::look() {
    QWidget* const widget = QApplication::activeModalWidget();
    if (!widget || !widget->isVisible())
        return;
    if (m_answers.isEmpty()) {
        ADD_FAILURE() << "unexpected dialog: " << widget->windowTitle().toStdString();
        widget->close();
        return;
    }
    if (QMessageBox* const box = qobject_cast<QMessageBox*>(widget))
        answer(box, m_answers.takeFirst());
    else if (QFileDialog* const dialog = qobject_cast<QFileDialog*>(widget))
        answer(dialog, m_answers.takeFirst());
}

void ModalOperator::answer(QMessageBox* box, const Answer& answer) {
    Seen box_seen = Seen();
    box_seen.title = box->windowTitle();
    box_seen.text = box->text();
    box_seen.informative_text = box->informativeText();
    box_seen.buttons = box->standardButtons();
    box_seen.parent = box->parentWidget();
    const QPushButton* const cancel = qobject_cast<QPushButton*>(box->button(QMessageBox::Cancel));
    box_seen.cancel_is_default = cancel && cancel->isDefault();
    seen.append(box_seen);
    QAbstractButton* const button = box->button(answer.button);
    EXPECT_NE(button, nullptr);
    if (button)
        button->click();
    else
        box->close();
}

void ModalOperator::answer(QFileDialog* dialog, const Answer& answer) {
    Seen dialog_seen = Seen();
    dialog_seen.title = dialog->windowTitle();
    dialog_seen.directory = dialog->directory().absolutePath();
    dialog_seen.filters = dialog->nameFilters();
    dialog_seen.parent = dialog->parentWidget();
    seen.append(dialog_seen);
    QDialog* const base = dialog; // there, accept() is public
    if (answer.file_name.isEmpty()) {
        base->reject();
        return;
    }
    QLineEdit* const name = dialog->findChild<QLineEdit*>(QLatin1String("fileNameEdit"));
    ASSERT_NE(name, nullptr);
    name->setText(answer.file_name);
    base->accept();
}
