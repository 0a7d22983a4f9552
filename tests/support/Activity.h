#pragma once

#include <QAbstractAnimation>
#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QStringList>
#include <QWidget>

namespace quiverly {

// What keeps the processor busy though nothing happens: the classes of all objects of the window, and of the
// application around it, that have a timer or are a running animation.
inline QStringList activity(QWidget& window) {
    auto* const dispatcher = QAbstractEventDispatcher::instance();
    QObjectList objects;
    for (QObject* root :
         {static_cast<QObject*>(&window), static_cast<QObject*>(qApp), static_cast<QObject*>(dispatcher)}) {
        objects << root << root->findChildren<QObject*>();
    }
    QStringList busy;
    for (QObject* object : objects) {
        const auto* animation = qobject_cast<QAbstractAnimation*>(object);
        const bool moves = animation && animation->state() == QAbstractAnimation::Running;
        if (moves || !dispatcher->registeredTimers(object).isEmpty()) busy << object->metaObject()->className();
    }
    return busy;
}

} // namespace quiverly
