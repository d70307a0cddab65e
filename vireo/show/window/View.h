#pragma once

#include <QImage>
#include <QWidget>
#include <functional>
#include <memory>
#include <string>

#include "tavo/base/files/saveFile.h"
#include "vireo/show/window/gestureHelp.h"

namespace tavo {

class ViewUpdate;
struct Replaced;

// What is shown under one name. It lives in the window's thread, in a dock of the window or in none.
class View : public QWidget
{
public:
    // Frees what will be replaced. The update that replaces it is applied before anything is painted.
    virtual void makeRoom(const Replaced& replaced) = 0;

    // Shows what was sent.
    virtual void apply(ViewUpdate& update) = 0;

    // Says what was sent and cannot be shown, since it belongs to what has not come. Nothing more will.
    virtual void sayWhatWaits() {}

    // What the view shows, drawn at that size in pixels, however large the widget is.
    virtual QImage picture(QSize size) = 0;

    // Saves such a picture, in the format that the file's name ends with. Why it could not be saved, for a person;
    // empty if it was.
    virtual std::string savePicture(const QString& file, QSize size) { return tavo::savePicture(file, picture(size)); }

    // The formats of such pictures, as a dialog names them that asks for a file.
    virtual QStringList pictureFormats() const { return {"PNG (*.png)"}; }

    // Saves the data that are shown, in the format that the file's name ends with. Why they could not be saved, for a
    // person; empty if they were.
    virtual std::string saveData(const QString& file) = 0;

    // Saves those of the data that are in view, as saveData(); empty if there is no such part.
    virtual std::function<std::string(const QString&)> seenDataSaver() { return nullptr; }

    // Opens what the view is configured with; empty if there is nothing to configure.
    virtual std::function<void()> configuration() { return nullptr; }

    // What mouse and keys do here; F1 and ? list it. Where there is nothing, they list nothing.
    virtual std::vector<Gesture> gestures() const { return {}; }
    void openHelp();

protected:
    void keyPressEvent(QKeyEvent* event) override;
};

} // namespace tavo
