#pragma once

#include "engine/BonkoEngine.h"
#include "ui/EngineObserver.h"
#include "ui/View.h"

class QLayout;

namespace quiverly {

class Label;
class MonospacedDigits;
class PushButton;
class ScrollArea;
class SegmentedPicker;
class Slider;
class StatusPill;

// The main view: start and stop, the choice of the pack, the sensitivity, and what the engine is doing.
//
// Keeps no state of its own: shows what it reads from the engine, and writes what the user chooses straight into it.
// Its focus is on the picker.
class ContentView : public View {
public:
    explicit ContentView(BonkoEngine& engine); // the engine outlives the view

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

private:
    QWidget* scrollArea();
    QLayout* sensitivityGroup();
    QLayout* statusBlock();

    void refresh();
    void refreshStatusBlock();
    QString statusText() const;
    void refreshCounter();

    void choosePack(int index);
    void startOrStop();

    BonkoEngine& engine;
    StatusPill* pill;
    SegmentedPicker* picker;
    MonospacedDigits* value;
    Slider* slider;
    PushButton* button;
    Label* status;
    Label* hint;
    Label* counter;
    ScrollArea* area;
    EngineObserver observer;
};

} // namespace quiverly
