#pragma once

#include <QString>

// Every message box and input box of the program goes through this layer, so that tests can
// answer them without showing anything.
enum class Buttons { Ok, OkCancel, YesNo, YesNoCancel };
enum class Icon { None, Information, Question, Warning, Critical };
enum class Answer { Ok, Cancel, Yes, No };

// One question of the question dialog frmQuestion, as the list activation asks it: what the
// caller sets before showing it.
struct Question {
    QString title;        // TitreFenetre, the dialog's heading
    QString text;         // TexteQuestion
    QString defaultValue; // ValeurDefaut, put into the entry box
    QString fieldLabel;   // the caption beside the entry box
    QString optionCaption;
    bool option = false;          // chkOption ticked
    bool showDepartement = false; // the department list and its label shown
    QString departement;          // the department code preselected
};

// What the dialog answers: the button that closed it (1 accept, 3 abandon), the text typed,
// the check box and the department code chosen.
struct QuestionAnswer {
    static constexpr int Accept = 1;
    static constexpr int Abandon = 3;
    int bouton = Abandon;
    QString text;
    bool option = false;
    QString departement;
};

class Prompter {
public:
    virtual ~Prompter() = default;
    virtual Answer messageBox(const QString& text, Buttons buttons, Icon icon,
                              const QString& title) = 0;
    // The typed text, or an empty text when the user cancels (as the input box answers).
    virtual QString inputBox(const QString& prompt, const QString& title,
                             const QString& defaultAnswer) = 0;
    // The question dialog; a prompter that does not show it answers "Abandon".
    virtual QuestionAnswer question(const Question& question);
};

// The prompter in force: the Qt one unless a test installed its own.
Prompter& Prompts();
// Installs a prompter (nullptr restores the Qt one); returns the previous one.
Prompter* SetPrompter(Prompter* prompter);

Answer MsgBox(const QString& text, Buttons buttons = Buttons::Ok, Icon icon = Icon::None,
              const QString& title = {});
QString InputBox(const QString& prompt, const QString& title = {},
                 const QString& defaultAnswer = {});
QuestionAnswer AskQuestion(const Question& question);
