#pragma once

#include <QMainWindow>
#include <functional>

class QToolBar;

// The frame window: the versioned caption, a tool bar, and the main window inside it.
class MDIfrmMain : public QMainWindow {
    Q_OBJECT
public:
    explicit MDIfrmMain(QWidget* parent = nullptr);

    QToolBar* Toolbar1;

    // The tool bar's buttons act by their key.
    void ButtonClick(const QString& key);

    // The main window inside decides whether the program may close, and what closing does.
    std::function<bool()> onQueryUnload;
    std::function<void()> onUnload;

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    bool unloaded_ = false;
};
