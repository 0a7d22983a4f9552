#pragma once

#include <QAccessible>

class QLabel;
class QString;
class QWidget;

namespace quiverly {

// What assistive tools see of the window: the widgets that are described here, of these roles, as far as they are
// visible. All others, which only serve the layout, are left out, and their children take their place.
//
// Labels and buttons are called what they say unless they are given a name.
void describeAs(QWidget& widget, QAccessible::Role role, const QString& name = {});

// Has a screen reader speak what a label says, though the focus is elsewhere. The label is described as one that
// speaks.
void describeAsSpeaking(QLabel& label);
void speak(QLabel& label);
void speakOnAppearing(QLabel& label); // to be called from its show event

} // namespace quiverly
