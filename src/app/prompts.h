#pragma once

#include <QString>

// Every message box and input box of the program goes through this layer, so that tests can
// answer them without showing anything.
enum class Buttons { Ok, OkCancel, YesNo, YesNoCancel };
enum class Icon { None, Information, Question, Warning, Critical };
enum class Answer { Ok, Cancel, Yes, No };

class Prompter {
public:
    virtual ~Prompter() = default;
    virtual Answer messageBox(const QString& text, Buttons buttons, Icon icon,
                              const QString& title) = 0;
    // The typed text, or an empty text when the user cancels (as the input box answers).
    virtual QString inputBox(const QString& prompt, const QString& title,
                             const QString& defaultAnswer) = 0;
};

// The prompter in force: the Qt one unless a test installed its own.
Prompter& Prompts();
// Installs a prompter (nullptr restores the Qt one); returns the previous one.
Prompter* SetPrompter(Prompter* prompter);

Answer MsgBox(const QString& text, Buttons buttons = Buttons::Ok, Icon icon = Icon::None,
              const QString& title = {});
QString InputBox(const QString& prompt, const QString& title = {},
                 const QString& defaultAnswer = {});
