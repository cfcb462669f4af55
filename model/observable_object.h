// An object that says that it is about to change, and how others look again once it has.
//
// `objectWillChange` is emitted before a published value changes, on the main thread. Nobody reads inside it:
// `observe` calls back on a later turn of the loop, once for any number of changes, when the new values are
// there.
#pragma once

#include <QObject>
#include <functional>

namespace hopsel {

class ObservableObject : public QObject {
    Q_OBJECT

  public:
    using QObject::QObject;

    /// `callback` runs until this object or `context`, on which it may lean, is gone.
    void observe(QObject* context, std::function<void()> callback);

  Q_SIGNALS:
    void objectWillChange();

  protected:
    /// Says so first; a value that stays the same is no change.
    template <class Value, class NewValue>
    void publish(Value& property, NewValue&& value) {
        if (property == value) return;
        Q_EMIT objectWillChange();
        property = std::forward<NewValue>(value);
    }
};

} // namespace hopsel
