#pragma once

#include <QString>

// The numbered texts of the program, French at 1000 + k and English at 2000 + k.
class MessageCatalogue {
public:
    // Text of a resource id (1000..1145 or 2000..2145); throws std::out_of_range for an id
    // that has no text.
    static QString text(int id);
    static bool contains(int id);
};

// Text of message k (0..145) in the current language: resource Nation + k.
QString LoadText(int k);

// Puts Qt's own buttons and dialogs ("Oui", "Non", "Annuler"...) in the language of Nation.
// Called at start-up, and again whenever the language changes.
void LoadQtTranslations();
