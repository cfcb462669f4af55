// Tells views that the recording changed, so that the recorder itself need not be observable.
//
// Made and owned by the application model. The number means nothing; only that it changes.
#pragma once

#include "model/observable_object.h"

namespace hopsel {

class DiagnosticsFeed final : public ObservableObject {
  public:
    int revision() const { return revision_; }
    void bump() { publish(revision_, revision_ + 1); }

  private:
    int revision_ = 0;
};

} // namespace hopsel
