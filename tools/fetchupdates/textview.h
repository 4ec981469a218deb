#pragma once

// The download session without a window: progress on standard error, the report on standard
// output, and the questions answered as the command line asked.

#include "app/prompts.h"
#include "comms/sessionview.h"
#include "pricelists/listmarks.h"

#include <QSet>
#include <QString>
#include <cstdio>

class DownloadSession;

class TextView final : public QuietSessionView {
public:
    explicit TextView(DownloadChoice choice);

    void showProgress(float percent) override;
    void showTransferTitle(const QString& text) override;
    DownloadChoice downloadChoice() override { return choice_; }
    void uncheckBox(int index) override { choice_.boxes[index] = false; }
    QString choiceCaption(int index) const override { return captions_[index]; }
    void setChoiceCaption(int index, const QString& caption) override {
        captions_[index] = caption;
    }
    void showReport(const QString& report) override;
    void closeProgram() override { failed = true; }
    void itemDone(const QString& item, bool succeeded) override;

    bool failed = false;
    bool reportShown = false;

private:
    void clearBar();

    DownloadChoice choice_;
    QString captions_[6] = {
        {}, {}, {}, {}, QStringLiteral("Partdex"), QStringLiteral("Ledgermaker")};
    QString title_;
    bool terminal_;
    bool barShown_ = false;
};

// Answers the session's questions: catalogues yes when they were asked for, the program
// update always no (its version goes to standard error); every other box is a message for
// standard error and marks the run as failed.
class ToolPrompter final : public Prompter {
public:
    explicit ToolPrompter(bool catalogues) : catalogues_(catalogues) {}
    // The session whose offered version is printed.
    void setSession(const DownloadSession* session) { session_ = session; }

    Answer messageBox(const QString& text, Buttons buttons, Icon icon,
                      const QString& title) override;
    QString inputBox(const QString& prompt, const QString&, const QString&) override;

    bool failed = false;

private:
    const DownloadSession* session_ = nullptr;
    bool catalogues_;
};

void PrintLine(FILE* stream, const QString& text);
