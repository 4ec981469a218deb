#include "scriptedprompter.h"

#include <QRegularExpression>
#include <gtest/gtest.h>

ScriptedPrompter::ScriptedPrompter() {
    previous_ = SetPrompter(this);
}

ScriptedPrompter::~ScriptedPrompter() {
    SetPrompter(previous_);
    for (const Step& step : script_)
        ADD_FAILURE() << "expected prompt never shown: " << step.text.toStdString();
}

ScriptedPrompter& ScriptedPrompter::expectMessage(const QString& text, Answer answer) {
    script_.push_back({false, text, false, Buttons::Ok, Icon::None, {}, answer, {}});
    return *this;
}

ScriptedPrompter& ScriptedPrompter::expectMessage(const QString& text, Buttons buttons, Icon icon,
                                                  const QString& title, Answer answer) {
    script_.push_back({false, text, true, buttons, icon, title, answer, {}});
    return *this;
}

ScriptedPrompter& ScriptedPrompter::expectInput(const QString& prompt, const QString& answer) {
    script_.push_back({true, prompt, false, Buttons::Ok, Icon::None, {}, Answer::Ok, answer});
    return *this;
}

ScriptedPrompter& ScriptedPrompter::expectInput(const QString& prompt, const QString& answer,
                                                const QString& proposed) {
    expectInput(prompt, answer);
    script_.back().proposed = proposed;
    return *this;
}

ScriptedPrompter& ScriptedPrompter::expectMessageMatching(const QString& pattern, Answer answer) {
    Step step{false, pattern, false, Buttons::Ok, Icon::None, {}, answer, {}};
    step.pattern = true;
    script_.push_back(step);
    return *this;
}

Answer ScriptedPrompter::messageBox(const QString& text, Buttons buttons, Icon icon,
                                    const QString& title) {
    shown_ << text;
    if (script_.empty() || script_.front().input || script_.front().question) {
        ADD_FAILURE() << "unexpected message box: " << text.toStdString();
        return buttons == Buttons::Ok ? Answer::Ok : Answer::Cancel;
    }
    const Step step = script_.front();
    script_.pop_front();
    if (step.pattern)
        EXPECT_TRUE(QRegularExpression(step.text).match(text).hasMatch())
            << text.toStdString() << " does not match " << step.text.toStdString();
    else
        EXPECT_EQ(step.text.toStdString(), text.toStdString());
    if (step.checkStyle) {
        EXPECT_EQ(int(step.buttons), int(buttons)) << "buttons of " << text.toStdString();
        EXPECT_EQ(int(step.icon), int(icon)) << "icon of " << text.toStdString();
        EXPECT_EQ(step.title.toStdString(), title.toStdString());
    }
    return step.answer;
}

QString ScriptedPrompter::inputBox(const QString& prompt, const QString&,
                                   const QString& defaultAnswer) {
    shown_ << prompt;
    if (script_.empty() || !script_.front().input || script_.front().question) {
        ADD_FAILURE() << "unexpected input box: " << prompt.toStdString();
        return {};
    }
    const Step step = script_.front();
    script_.pop_front();
    EXPECT_EQ(step.text.toStdString(), prompt.toStdString());
    if (step.proposed) {
        EXPECT_EQ(step.proposed->toStdString(), defaultAnswer.toStdString()) << "proposed";
    }
    return step.typed;
}

ScriptedPrompter& ScriptedPrompter::expectQuestion(const QString& text,
                                                   const QuestionAnswer& answer) {
    Step step{false, text, false, Buttons::Ok, Icon::None, {}, Answer::Ok, {}};
    step.question = true;
    step.reply = answer;
    script_.push_back(step);
    return *this;
}

ScriptedPrompter& ScriptedPrompter::expectQuestion(const QString& text, const QString& typed,
                                                   bool option) {
    QuestionAnswer answer;
    answer.bouton = QuestionAnswer::Accept;
    answer.text = typed;
    answer.option = option;
    return expectQuestion(text, answer);
}

// An accepted answer that names no department keeps the one the dialog preselected.
QuestionAnswer ScriptedPrompter::question(const Question& question) {
    shown_ << question.text;
    questions_ << question;
    if (script_.empty() || !script_.front().question) {
        ADD_FAILURE() << "unexpected question: " << question.text.toStdString();
        return {};
    }
    const Step step = script_.front();
    script_.pop_front();
    EXPECT_EQ(step.text.toStdString(), question.text.toStdString());
    QuestionAnswer answer = step.reply;
    if (answer.departement.isEmpty() && question.showDepartement)
        answer.departement = question.departement;
    return answer;
}
