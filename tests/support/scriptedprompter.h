#pragma once

#include "app/prompts.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <deque>
#include <optional>

// A prompter for tests: each expected prompt is scripted with its answer, in order. A prompt
// that nobody scripted, or one with other text, fails the test; so does a scripted prompt that
// never came. Installs itself for its lifetime.
class ScriptedPrompter final : public Prompter {
public:
    ScriptedPrompter();
    ~ScriptedPrompter() override;

    ScriptedPrompter& expectMessage(const QString& text, Answer answer = Answer::Ok);
    ScriptedPrompter& expectMessage(const QString& text, Buttons buttons, Icon icon,
                                    const QString& title, Answer answer);
    // An input box answered with `answer`; with `proposed`, also the answer the box proposes.
    ScriptedPrompter& expectInput(const QString& prompt, const QString& answer,
                                  const std::optional<QString>& proposed = std::nullopt);
    // A box whose text is not known in advance (a system error description, say).
    ScriptedPrompter& expectMessageMatching(const QString& pattern, Answer answer = Answer::Ok);

    // A question of the question dialog, whose text (TexteQuestion) must match; the dialog
    // answers with `answer`. The question itself is kept for assertions (questions()).
    ScriptedPrompter& expectQuestion(const QString& text, const QuestionAnswer& answer);
    // Accepting the question with a typed text and the check box value.
    ScriptedPrompter& expectQuestion(const QString& text, const QString& typed,
                                     bool option = false);
    const QList<Question>& questions() const { return questions_; }

    // Every text shown so far (messages and input prompts), for assertions on order.
    const QStringList& shown() const { return shown_; }
    bool done() const { return script_.empty(); }

    Answer messageBox(const QString& text, Buttons buttons, Icon icon,
                      const QString& title) override;
    QString inputBox(const QString& prompt, const QString& title,
                     const QString& defaultAnswer) override;
    QuestionAnswer question(const Question& question) override;

private:
    enum class Kind { Message, Input, Question };
    struct Style {
        Buttons buttons;
        Icon icon;
        QString title;
    };
    struct Step {
        Kind kind;
        QString text; // the prompt's text, or a pattern for it
        Answer answer = Answer::Ok;
        std::optional<Style> style = std::nullopt; // checked when given
        bool pattern = false;
        QString typed = {};                             // an input box's answer
        std::optional<QString> proposed = std::nullopt; // checked when given
        QuestionAnswer reply = {};
    };
    ScriptedPrompter& add(Step step);
    std::optional<Step> next(Kind kind, const QString& text);

    std::deque<Step> script_;
    QStringList shown_;
    QList<Question> questions_;
    Prompter* previous_ = nullptr;
};
