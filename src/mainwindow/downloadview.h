#pragma once

#include "comms/session.h"
#include "comms/sessionview.h"

#include <functional>

class DownloadPage;
class QWidget;

// The download session as the main window shows it: the Download tab's controls, the progress
// and captions, the report window. What lies outside the tab (the command strip, the trees,
// the list selection, the rebuilds) is reached through the hooks frmMain gives.
class DownloadView final : public SessionView {
public:
    struct Hooks {
        // The menu pictures (unless in update mode), the two tab strips and their visible trees.
        std::function<void(bool enabled)> enableOtherControls;
        // SauveChange when the configuration pane holds changes; false stops the command.
        std::function<bool()> savePendingChanges;
        // ListMarks, ListCount, CheckedCatCount and the checked catalogues of the trees.
        std::function<void(DownloadChoice& choice)> fillListChoice;
        // SetupCat and SetupList.
        std::function<void()> rebuildTrees;
        // SetupBulletin, once the newsletters are part of the window.
        std::function<void()> rebuildBulletins;
        std::function<void()> focusListTree;
        // The main window unloads (the program ends).
        std::function<void()> closeProgram;
    };

    DownloadView(DownloadPage& page, QWidget& window, Hooks hooks);

    DownloadSession& session() { return session_; }

    // The download button: pending changes first, then start or offer to stop.
    void cmdOKClick();

    void showProgress(float percent) override;
    void showTransferTitle(const QString& text) override;
    void showTransferStatus(const QString& text) override;
    void sessionStarted() override;
    void setDownloadButtonEnabled(bool enabled) override;
    void enableControls() override;
    void sessionEnded() override;
    void setBusy(bool busy) override;
    DownloadChoice downloadChoice() override;
    void uncheckBox(int index) override;
    QString choiceCaption(int index) const override;
    void setChoiceCaption(int index, const QString& caption) override;
    void setChoiceBold(int index, bool bold) override;
    void rebuildViews() override;
    void restoreWindow() override;
    void showReport(const QString& report) override;
    void closeProgram() override;

private:
    DownloadPage& page_;
    QWidget& window_;
    Hooks hooks_;
    DownloadSession session_;
};
