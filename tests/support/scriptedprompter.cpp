#include "scriptedprompter.h"

#include <QRegularExpression>
#include <gtest/gtest.h>

ScriptedPrompter::ScriptedPrompter() : previous_(SetPrompter(this)) {}

ScriptedPrompter::~ScriptedPrompter() {
    SetPrompter(previous_);
    for (const Step& step : script_)
        ADD_FAILURE() << "expected prompt never shown: " << step.text.toStdString();
}

ScriptedPrompter& ScriptedPrompter::add(Step step) {
    script_.push_back(std::move(step));
    return *this;
}

ScriptedPrompter& ScriptedPrompter::expectMessage(const QString& text, Answer answer) {
    return add({Kind::Message, text, answer});
}

ScriptedPrompter& ScriptedPrompter::expectMessage(const QString& text, Buttons buttons, Icon icon,
                                                  const QString& title, Answer answer) {
    return add({Kind::Message, text, answer, Style{buttons, icon, title}});
}

ScriptedPrompter& ScriptedPrompter::expectMessageMatching(const QString& pattern, Answer answer) {
    return add({Kind::Message, pattern, answer, {}, true});
}

ScriptedPrompter& ScriptedPrompter::expectInput(const QString& prompt, const QString& answer,
                                                const std::optional<QString>& proposed) {
    return add({Kind::Input, prompt, Answer::Ok, {}, false, answer, proposed});
}

ScriptedPrompter& ScriptedPrompter::expectQuestion(const QString& text,
                                                   const QuestionAnswer& answer) {
    return add({Kind::Question, text, Answer::Ok, {}, false, {}, {}, answer});
}

ScriptedPrompter& ScriptedPrompter::expectQuestion(const QString& text, const QString& typed,
                                                   bool option) {
    return expectQuestion(text, {QuestionAnswer::Accept, typed, option, {}});
}

// The next scripted step, when it is a prompt of this kind with this text.
std::optional<ScriptedPrompter::Step> ScriptedPrompter::next(Kind kind, const QString& text) {
    shown_ << text;
    if (script_.empty() || script_.front().kind != kind) {
        static const char* const names[] = {"message box", "input box", "question"};
        ADD_FAILURE() << "unexpected " << names[int(kind)] << ": " << text.toStdString();
        return std::nullopt;
    }
    Step step = script_.front();
    script_.pop_front();
    if (step.pattern)
        EXPECT_TRUE(QRegularExpression(step.text).match(text).hasMatch())
            << text.toStdString() << " does not match " << step.text.toStdString();
    else
        EXPECT_EQ(step.text.toStdString(), text.toStdString());
    return step;
}

Answer ScriptedPrompter::messageBox(const QString& text, Buttons buttons, Icon icon,
                                    const QString& title) {
    const std::optional<Step> step = next(Kind::Message, text);
    if (!step)
        return buttons == Buttons::Ok ? Answer::Ok : Answer::Cancel;
    if (step->style) {
        EXPECT_EQ(int(step->style->buttons), int(buttons)) << "buttons of " << text.toStdString();
        EXPECT_EQ(int(step->style->icon), int(icon)) << "icon of " << text.toStdString();
        EXPECT_EQ(step->style->title.toStdString(), title.toStdString());
    }
    return step->answer;
}

QString ScriptedPrompter::inputBox(const QString& prompt, const QString&,
                                   const QString& defaultAnswer) {
    const std::optional<Step> step = next(Kind::Input, prompt);
    if (step && step->proposed) {
        EXPECT_EQ(step->proposed->toStdString(), defaultAnswer.toStdString()) << "proposed";
    }
    return step ? step->typed : QString();
}

// An accepted answer that names no department keeps the one the dialog preselected.
QuestionAnswer ScriptedPrompter::question(const Question& question) {
    questions_ << question;
    const std::optional<Step> step = next(Kind::Question, question.text);
    if (!step)
        return {};
    QuestionAnswer answer = step->reply;
    if (answer.departement.isEmpty() && question.showDepartement)
        answer.departement = question.departement;
    return answer;
}
