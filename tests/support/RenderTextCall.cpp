#include <QFont>
#include <QGLWidget>

#include "tests/support/RecordedCall.h"

// Records QGLWidget::renderText in space as "QGLWidget::renderText(1, 2, 3, "text", QFont())".

using tavo::CallRecorder;
using tavo::format::numberText;
using tavo::format::quotedText;

// The member function, as it looks to the linker.
#define RENDER_TEXT "_ZN9QGLWidget10renderTextEdddRK7QStringRK5QFont"
extern "C" void renderText(QGLWidget*, double, double, double, const QString&, const QFont&) asm(RENDER_TEXT);

namespace {

void recordRenderText(QGLWidget* widget, double x, double y, double z, const QString& text, const QFont& font)
{
    static const auto real = reinterpret_cast<decltype(&recordRenderText)>(tavo::libraryFunction(RENDER_TEXT));

    if (CallRecorder* recorder = CallRecorder::listening()) {
        const std::string fontText = font == QFont() ? "QFont()" : quotedText(font.toString().toStdString());
        recorder->add("QGLWidget::renderText(" + numberText(x) + ", " + numberText(y) + ", " + numberText(z) + ", " +
                      quotedText(text.toStdString()) + ", " + fontText + ')');
    }
    const CallRecorder::Pause callsOfQt;
    real(widget, x, y, z, text, font);
}

} // namespace

VIREO_REPLACE(renderText, RENDER_TEXT, recordRenderText, 6)
