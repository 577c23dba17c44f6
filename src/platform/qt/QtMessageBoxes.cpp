#include "platform/qt/QtMessageBoxes.h"

#include <QMessageBox>
#include <QPushButton>
#include <vector>

namespace nv {

namespace {

std::vector<std::pair<QMessageBox::StandardButton, Answer>> buttonsOf(Buttons buttons) {
    switch (buttons) {
    case Buttons::OK:
        return {{QMessageBox::Ok, Answer::OK}};
    case Buttons::OKCancel:
        return {{QMessageBox::Ok, Answer::OK}, {QMessageBox::Cancel, Answer::Cancel}};
    case Buttons::YesNo:
        return {{QMessageBox::Yes, Answer::Yes}, {QMessageBox::No, Answer::No}};
    case Buttons::YesNoCancel:
        return {{QMessageBox::Yes, Answer::Yes},
                {QMessageBox::No, Answer::No},
                {QMessageBox::Cancel, Answer::Cancel}};
    case Buttons::RetryCancel:
        return {{QMessageBox::Retry, Answer::Retry}, {QMessageBox::Cancel, Answer::Cancel}};
    }
    return {{QMessageBox::Ok, Answer::OK}};
}

// The program speaks Dutch whatever the language of the machine.
QString dutchText(QMessageBox::StandardButton button) {
    switch (button) {
    case QMessageBox::Ok:
        return "OK";
    case QMessageBox::Cancel:
        return "Annuleren";
    case QMessageBox::Yes:
        return "&Ja";
    case QMessageBox::No:
        return "&Nee";
    case QMessageBox::Retry:
        return "&Opnieuw";
    default:
        return {};
    }
}

QMessageBox::Icon iconOf(Icon icon) {
    switch (icon) {
    case Icon::Critical:
        return QMessageBox::Critical;
    case Icon::Question:
        return QMessageBox::Question;
    case Icon::Exclamation:
        return QMessageBox::Warning;
    case Icon::Information:
        return QMessageBox::Information;
    case Icon::None:
        break;
    }
    return QMessageBox::NoIcon;
}

} // namespace

Answer QtMessageBoxes::show(const MessageBoxRequest& request) {
    QMessageBox box;
    box.setWindowTitle(QString::fromStdString(request.title));
    box.setText(QString::fromStdString(request.text));
    box.setTextFormat(Qt::PlainText);
    box.setIcon(iconOf(request.icon));
    auto buttons = buttonsOf(request.buttons);
    std::vector<QPushButton*> made;
    for (auto& [standard, answer] : buttons) {
        QPushButton* button = box.addButton(standard);
        button->setText(dutchText(standard));
        button->setAccessibleName(button->text().remove('&'));
        made.push_back(button);
    }
    std::size_t index = static_cast<std::size_t>(request.defaultButton);
    if (index >= made.size())
        index = 0;
    box.setDefaultButton(made[index]);
    // Escape answers with the last button, as Cancel or No would.
    box.setEscapeButton(made.back());
    box.exec();
    for (std::size_t i = 0; i < made.size(); ++i)
        if (box.clickedButton() == made[i])
            return buttons[i].second;
    return buttons.back().second;
}

} // namespace nv
