#include "app/prompts.h"

#include "app/frmquestion.h"
#include "app/messages.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>

namespace {

QMessageBox::StandardButtons standardButtons(Buttons buttons) {
    switch (buttons) {
    case Buttons::Ok:
        return QMessageBox::Ok;
    case Buttons::OkCancel:
        return QMessageBox::Ok | QMessageBox::Cancel;
    case Buttons::YesNo:
        return QMessageBox::Yes | QMessageBox::No;
    case Buttons::YesNoCancel:
        return QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
    }
    return QMessageBox::Ok;
}

QMessageBox::Icon standardIcon(Icon icon) {
    switch (icon) {
    case Icon::None:
        return QMessageBox::NoIcon;
    case Icon::Information:
        return QMessageBox::Information;
    case Icon::Question:
        return QMessageBox::Question;
    case Icon::Warning:
        return QMessageBox::Warning;
    case Icon::Critical:
        return QMessageBox::Critical;
    }
    return QMessageBox::NoIcon;
}

// Boxes without a title of their own show the product name, as the system did.
QString windowTitle(const QString& title) {
    return title.isEmpty() ? QApplication::applicationName() : title;
}

class QtPrompter final : public Prompter {
public:
    Answer messageBox(const QString& text, Buttons buttons, Icon icon,
                      const QString& title) override {
        QMessageBox box(standardIcon(icon), windowTitle(title), text, standardButtons(buttons),
                        QApplication::activeWindow());
        switch (box.exec()) {
        case QMessageBox::Ok:
            return Answer::Ok;
        case QMessageBox::Yes:
            return Answer::Yes;
        case QMessageBox::No:
            return Answer::No;
        case QMessageBox::Cancel:
            return Answer::Cancel;
        default:
            return buttons == Buttons::Ok      ? Answer::Ok
                   : buttons == Buttons::YesNo ? Answer::No
                                               : Answer::Cancel;
        }
    }

    QString inputBox(const QString& prompt, const QString& title,
                     const QString& defaultAnswer) override {
        bool ok = false;
        const QString text = QInputDialog::getText(QApplication::activeWindow(), windowTitle(title),
                                                   prompt, QLineEdit::Normal, defaultAnswer, &ok);
        return ok ? text : QString();
    }

    QuestionAnswer question(const Question& q) override {
        frmQuestion dialog(QApplication::activeWindow());
        dialog.setTitreFenetre(q.title);
        dialog.setTexteQuestion(q.text);
        dialog.setValeurDefaut(q.defaultValue);
        dialog.lblEntree->setText(q.fieldLabel);
        dialog.lblDepartement->setVisible(q.showDepartement);
        dialog.cmbDepart->setVisible(q.showDepartement);
        dialog.selectDepartement(q.departement);
        dialog.chkOption->setText(q.optionCaption);
        dialog.chkOption->setChecked(q.option);
        dialog.exec();
        QuestionAnswer answer;
        answer.bouton = dialog.bouton().toInt();
        answer.text = dialog.txtQuestion->text();
        answer.option = dialog.chkOption->isChecked();
        // No row chosen in the list: the department proposed stands.
        answer.departement = dialog.departement().isEmpty() ? q.departement : dialog.departement();
        return answer;
    }
};

QtPrompter qtPrompter;
Prompter* current = &qtPrompter;

} // namespace

QuestionAnswer Prompter::question(const Question&) {
    return {};
}

Prompter& Prompts() {
    return *current;
}

Prompter* SetPrompter(Prompter* prompter) {
    Prompter* previous = current;
    current = prompter ? prompter : &qtPrompter;
    return previous;
}

Answer MsgBox(const QString& text, Buttons buttons, Icon icon, const QString& title) {
    return Prompts().messageBox(text, buttons, icon, title);
}

QString InputBox(const QString& prompt, const QString& title, const QString& defaultAnswer) {
    return Prompts().inputBox(prompt, title, defaultAnswer);
}

QuestionAnswer AskQuestion(const Question& question) {
    return Prompts().question(question);
}
