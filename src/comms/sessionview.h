#pragma once

#include <QString>
#include <functional>

class ListMarkTable;

// What the window has chosen for a download, read when the plan starts: the six update boxes,
// the text of "Lists containing", the list selection and the checked catalogues. The window
// builds it from its controls; fetchupdates builds it from its options.
struct DownloadChoice {
    bool boxes[6] = {};
    QString expListText;
    // The per-list selection (ListMarks); the plan clears a row's selection when the dealer
    // asked for it. Not owned; null stands for an empty table.
    ListMarkTable* listMarks = nullptr;
    int listCount = 0;
    int checkedCatCount = 0;
    // True when the catalogue with this FICHIER is checked in the first catalogue tree.
    std::function<bool(const QString& fichier)> catalogueChecked;

    // The list mode of the plan: box 0 + 2 x box 1 + 4 x box 2.
    int listMode() const { return int(boxes[0]) + 2 * int(boxes[1]) + 4 * int(boxes[2]); }
};

// How a download session reaches the window (or the command-line tool). Questions and
// messages go through the prompt layer, not through here.
class SessionView {
public:
    virtual ~SessionView() = default;

    // ProgressBar1, lblIDTransfert and lblTransfert.
    virtual void showProgress(float percent) = 0;
    virtual void showTransferTitle(const QString& text) = 0;
    virtual void showTransferStatus(const QString& text) = 0;

    // The session starts: the download button becomes the stop button and the controls that
    // must not be used meanwhile are disabled.
    virtual void sessionStarted() = 0;
    // The download button alone (disabled while the session closes).
    virtual void setDownloadButtonEnabled(bool enabled) = 0;
    // Every control disabled by sessionStarted(), the download button and the update boxes
    // are enabled again.
    virtual void enableControls() = 0;
    // The session is over: the download button reads "Télécharger" again.
    virtual void sessionEnded() = 0;
    virtual void setBusy(bool busy) = 0;

    // The update boxes and their captions (lblCHK).
    virtual DownloadChoice downloadChoice() = 0;
    virtual void uncheckBox(int index) = 0;
    virtual QString choiceCaption(int index) const = 0;
    virtual void setChoiceCaption(int index, const QString& caption) = 0;
    virtual void setChoiceBold(int index, bool bold) = 0;

    // After a session: the newsletters and the trees show the new data.
    virtual void rebuildViews() = 0;
    // The window comes back to its normal size when it was minimised.
    virtual void restoreWindow() = 0;
    // The session report, shown modally; returns when the user closed it.
    virtual void showReport(const QString& report) = 0;
    // The version table cannot be read: the program ends.
    virtual void closeProgram() = 0;

    // One item of the plan is finished (its report line written); for progress outside a
    // window.
    virtual void itemDone(const QString& item, bool succeeded) {
        Q_UNUSED(item);
        Q_UNUSED(succeeded);
    }
};

// A view that shows nothing and chooses nothing: the base of views that follow only part of a
// session (the command-line tool, benchmarks).
class QuietSessionView : public SessionView {
public:
    void showProgress(float) override {}
    void showTransferTitle(const QString&) override {}
    void showTransferStatus(const QString&) override {}
    void sessionStarted() override {}
    void setDownloadButtonEnabled(bool) override {}
    void enableControls() override {}
    void sessionEnded() override {}
    void setBusy(bool) override {}
    DownloadChoice downloadChoice() override { return {}; }
    void uncheckBox(int) override {}
    QString choiceCaption(int) const override { return {}; }
    void setChoiceCaption(int, const QString&) override {}
    void setChoiceBold(int, bool) override {}
    void rebuildViews() override {}
    void restoreWindow() override {}
    void showReport(const QString&) override {}
    void closeProgram() override {}
};
