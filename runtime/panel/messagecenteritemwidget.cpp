#include "runtime/panel/messagecenteritemwidget.h"

#include "runtime/base/connectchecked.h"
#include "runtime/panel/kbuzzer.h"
#include "runtime/panel/messagecentergeometry.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

MessageCenterItemWidget::MessageCenterItemWidget(QWidget* parent)
    : QWidget(parent), label_msg(new QLabel(this)), pushButton_remove(new QPushButton(this)) {
    buildForm();
    QFont whole = font();
    whole.setFamily(QLatin1String("unifont"));
    setFont(whole);
    connectChecked(pushButton_remove, SIGNAL(pressed()), this, SLOT(makeBeep()));
    connectChecked(pushButton_remove, SIGNAL(clicked()), this, SIGNAL(removeClicked()));
}

void MessageCenterItemWidget::buildForm() {
    resize(153, MessageRowHeight);
    setWindowTitle(QLatin1String("Form"));

    label_msg->setObjectName(QLatin1String("label_msg"));
    QFont bold;
    bold.setPointSize(8);
    bold.setBold(true);
    label_msg->setFont(bold);
    label_msg->setWordWrap(true);
    label_msg->setText(QLatin1String("TextLabel"));

    pushButton_remove->setObjectName(QLatin1String("pushButton_remove"));
    pushButton_remove->setFixedSize(40, MessageEntryHeight);
    QFont heavy;
    heavy.setFamily(QLatin1String("Aharoni"));
    heavy.setBold(true);
    pushButton_remove->setFont(heavy);
    pushButton_remove->setText(QLatin1String("X"));

    QHBoxLayout* row = new QHBoxLayout(this);
    row->setObjectName(QLatin1String("horizontalLayout_2"));
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(label_msg);
    row->addWidget(pushButton_remove);
}

void MessageCenterItemWidget::setMessage(const QString& text) {
    label_msg->setText(text);
}

int MessageCenterItemWidget::getHeight() const {
    return pushButton_remove->height();
}

void MessageCenterItemWidget::makeBeep() {
    KBuzzer::getInstance()->makeSound(AbstractBuzzerInterface::SOUND_CLICK);
}
