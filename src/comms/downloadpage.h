#pragma once

#include <QWidget>
#include <array>

class QCheckBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;

// The first information tab: what to update, the download button, the warning and the
// transfer's progress. It keeps the rule of its update boxes (one choice at a time); the
// download session drives the rest through the main window.
class DownloadPage : public QWidget {
    Q_OBJECT
public:
    explicit DownloadPage(QWidget* parent = nullptr);

    QWidget* picFrame;
    QGroupBox* fraMAJ;
    std::array<QCheckBox*, 6> chkMAJ{};
    std::array<QLabel*, 6> lblCHK{};
    QLineEdit* txtExpList;
    QPushButton* cmdOK;
    QLabel* lblAttention;
    QProgressBar* ProgressBar1;
    QLabel* lblIDTransfert; // what is being fetched, or the session's status
    QLabel* lblTransfert;   // bytes, percentage and rate

    // Click on an update box: box 2 enables "Lists containing" (white, with the focus) or
    // greys it; a checked box disables the five others, an unchecked one enables all six.
    void chkMAJClick(int index);
    // The six boxes at once, as they were before the last click's rule.
    void setChoicesEnabled(bool enabled);

    // Captions of the current language, in the main window's caption order.
    void labelUpdateFrame();
    void labelChoices();
    void labelWarning();
    void labelDownloadButton();

    // picFrame takes the whole tab again (the Alt + arrow keys may have moved it).
    void fitFrame();

Q_SIGNALS:
    // The mouse was released on an update box: the list tree takes the focus back.
    void choiceMouseUp();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

    void resizeEvent(QResizeEvent* event) override;
};
