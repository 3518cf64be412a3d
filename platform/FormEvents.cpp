#include "platform/FormEvents.h"

#include <QApplication>
#include <QVariant>

namespace {

constexpr const char *KeptPalette = "buttonFace";

/// The widget's own palette with every colour said, so that Qt takes it as it is.
QPalette ButtonFaceOf(const QWidget &widget)
{
    const QPalette own = QApplication::palette(&widget);
    QPalette face = own;
    for (int i = 0; i < QPalette::NColorGroups; ++i) {
        const auto group = static_cast<QPalette::ColorGroup>(i);
        for (int j = 0; j < QPalette::NColorRoles; ++j) {
            const auto role = static_cast<QPalette::ColorRole>(j);
            face.setBrush(
                group, role, own.brush(group, role == QPalette::Base ? QPalette::Button : role));
        }
    }
    return face;
}

} // namespace

void DrawBackground(QWidget &widget, bool buttonFace)
{
    if (!buttonFace) {
        widget.setPalette(QPalette());
        return;
    }
    // The style keeps pictures of a list for every palette that it ever had, and their names for as
    // long as the program runs. So the same palette comes back, not one of the same colours.
    auto kept = widget.property(KeptPalette).value<QPalette>();
    const QPalette face = ButtonFaceOf(widget);
    if (kept != face) {
        kept = face;
        widget.setProperty(KeptPalette, kept);
    }
    widget.setPalette(kept);
}
