#pragma once

#include <vector>

#include <QWidget>

class QVBoxLayout;

namespace quiverly {

class StepRow;

// Steps numbered from 1, with connectors between them.
class StepList : public QWidget {
public:
    StepList();

    void add(const QString& title, QWidget* content); // takes the content over
    void show(int step, bool active, bool complete);

private:
    class Connector;

    QVBoxLayout* column;
    std::vector<StepRow*> rows;
    std::vector<Connector*> connectors; // each below the row of the same index
};

} // namespace quiverly
