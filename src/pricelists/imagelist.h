#pragma once

#include <QIcon>

// The pictures the trees show beside a catalogue that has lists under it (ImageList1):
// image 1 a closed catalogue, image 2 the same catalogue open. Drawn, not loaded, so that they
// scale with the screen.
class ImageList {
public:
    static constexpr int ClosedCatalogue = 1;
    static constexpr int OpenCatalogue = 2;

    // The image by its 1-based number; a null icon for any other number.
    static QIcon image(int number);
};
