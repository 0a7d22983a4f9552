#pragma once

#include <functional>
#include <vector>

#include <QWidget>

class QRadioButton;

namespace quiverly {

// A choice of one among a few: radio buttons side by side that look like one control.
class SegmentedPicker : public QWidget {
public:
    // `name` is for screen readers.
    SegmentedPicker(const QString& name, const QStringList& titles);

    void select(int index); // shows a choice without calling onChoice

    std::function<void(int index)> onChoice; // the user has chosen

private:
    void paintEvent(QPaintEvent* event) override;

    std::vector<QRadioButton*> segments;
    bool selecting = false;
};

} // namespace quiverly
