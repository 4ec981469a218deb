#pragma once

class QDialog;
class QPushButton;
class QWidget;

// Lays a dialog out as its content above a right-aligned OK button, the default button of the
// dialog; returns the button for the dialog to connect.
QPushButton* LayOutWithOkButton(QDialog& dialog, QWidget* content);
