#pragma once

#include <functional>
#include <vector>

#include <QWidget>

class QRadioButton;

namespace quiverly {

class FocusRing;

// A choice of one among a few: radio buttons side by side that look like one control. Its focus is on the selected one.
class SegmentedPicker : public QWidget {
public:
    // `name` is for screen readers.
    SegmentedPicker(const QString& name, const QStringList& titles);

    void select(int index); // shows a choice without calling onChoice

    std::function<void(int index)> onChoice; // the user has chosen

private:
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

    void didToggle(int index, bool on);

    std::vector<QRadioButton*> segments;
    FocusRing* ring;
    bool selecting = false;
};

} // namespace quiverly
