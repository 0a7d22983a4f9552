#pragma once

#include <optional>

#include <QColor>
#include <QObject>

class QPalette;

namespace quiverly {

enum class Tone { primary, secondary, tertiary, red, orange, green };

// Every colour of the window: light, dark, and either in high contrast. Follows the system while the program runs and
// emits changed() when the colours or the system's font have changed. Widgets that store a colour or a font listen to
// it; those that only paint need not, because the toolkit repaints the window. There is one for the application.
class Theme : public QObject {
    Q_OBJECT

public:
    // What the user has asked of every program, as far as the desktop tells.
    struct Preferences {
        std::optional<bool> dark;
        bool highContrast = false;
        bool reducedMotion = false;

        bool operator==(const Preferences&) const = default;
    };

    struct Colors {
        QColor window;
        QColor primary, secondary, tertiary; // texts
        QColor red, orange, green;           // texts
        QColor warning;                      // the triangle
        QColor accent, stop;                 // under white: badge, button
        QColor focus;                        // the ring where the keyboard is
        QColor divider;
        QColor track, selection, selectionEdge; // of the mode picker
        QColor groove, handle, handleEdge;      // of the slider
        QColor trackEdge;                       // of the mode picker, in high contrast
        double edgeWidth;                       // pixels
    };

    static constexpr QColor primaryPink{242, 71, 158}; // sRGB 0.95, 0.28, 0.62
    static constexpr QColor stopRed{255, 59, 48};      // the button while listening
    static const Colors light;
    static const Colors dark;
    static const Colors lightHighContrast;
    static const Colors darkHighContrast;

    static Theme& current();

    bool isDark() const { return darkness; }
    bool hasHighContrast() const { return highContrast; }
    bool reducesMotion() const;
    const Colors& colors() const;
    QColor color(Tone tone) const;
    QPalette palette() const; // for what the system's style paints, such as the window itself

    // Preferences come before what the toolkit knows of the desktop.
    void prefer(const Preferences& preferences);

signals:
    void changed();

private:
    explicit Theme(QObject* application);
    bool eventFilter(QObject* watched, QEvent* event) override;
    void readSystem();
    void follow();

    Preferences preferences;
    bool darkness = false;
    bool highContrast = false;
};

} // namespace quiverly
