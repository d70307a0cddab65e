#include "vireo/show/plots/plainText.h"

#include <QFont>
#include <optional>
#include <qwt_text_engine.h>

namespace tavo {

namespace {

// Beside Qwt's own, which plots of the program may use.
constexpr auto FORMAT = static_cast<QwtText::TextFormat>(QwtText::OtherFormat + 1);

class TextEngine : public QwtPlainTextEngine
{
public:
    void textMargins(
        const QFont& font, const QString& text, double& left, double& right, double& top, double& bottom) const override
    {
        if (!m_Margins || !(m_Margins->font == font)) {
            QwtPlainTextEngine::textMargins(font, text, left, right, top, bottom);
            m_Margins = Margins{font, top, bottom};
        }
        left = right = 0;
        top = m_Margins->top;
        bottom = m_Margins->bottom;
    }

private:
    struct Margins
    {
        QFont font;
        double top;
        double bottom;
    };

    // Of the font that was asked for last. In the window's thread.
    mutable std::optional<Margins> m_Margins;
};

} // namespace

QwtText plainText(const QString& text)
{
    if (!QwtText::textEngine(FORMAT))
        QwtText::setTextEngine(FORMAT, new TextEngine); // Qwt's from now on
    return {text, FORMAT};
}

} // namespace tavo
