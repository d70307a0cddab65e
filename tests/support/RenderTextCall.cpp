#include <QFont>
#include <QGLWidget>

#include "tests/support/RecordedCall.h"

// Records QGLWidget::renderText in space as "QGLWidget::renderText(1, 2, 3, "text", QFont())".

using vireo_test::CallRecorder;
using vireo_test::format::numberText;
using vireo_test::format::quotedText;

void QGLWidget::renderText(double x, double y, double z, const QString& text, const QFont& font)
{
    using RenderText = void (*)(QGLWidget*, double, double, double, const QString&, const QFont&);
    static const auto real =
        reinterpret_cast<RenderText>(dlsym(RTLD_NEXT, "_ZN9QGLWidget10renderTextEdddRK7QStringRK5QFont"));

    if (CallRecorder* recorder = CallRecorder::listening()) {
        const std::string fontText = font == QFont() ? "QFont()" : quotedText(font.toString().toStdString());
        recorder->add("QGLWidget::renderText(" + numberText(x) + ", " + numberText(y) + ", " + numberText(z) + ", " +
                      quotedText(text.toStdString()) + ", " + fontText + ')');
    }
    const CallRecorder::Pause callsOfQt;
    real(this, x, y, z, text, font);
}
