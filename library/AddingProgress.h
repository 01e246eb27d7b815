#pragma once

namespace velmorant {

/// Shows the progress of adding many files. Between step() calls the list lets events run.
class AddingProgress {
  public:
    virtual ~AddingProgress() = default;
    virtual void begin(int files) = 0;
    virtual void step(int filesAdded) = 0;
    virtual void end() = 0;
};

} // namespace velmorant
