// What the operating system asks of the process before there is an application object, and undoes once the
// program has started.
//
// Made by `main`, which tells it how far the start has come. It may change the environment of the process: no
// thread may run yet.
#pragma once

namespace hopsel {

class Launch {
  public:
    Launch() = default;
    Launch(const Launch&) = delete;
    Launch& operator=(const Launch&) = delete;
    virtual ~Launch() = default;

    /// The application object has just been made.
    virtual void applicationMade() = 0;
    /// Everything runs, or nothing ever will.
    virtual void finished() {}
};

} // namespace hopsel
