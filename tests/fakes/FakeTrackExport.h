#pragma once

#include "ports/TrackExport.h"

#include <vector>

namespace velmorant::fakes {

/// Takes its time: an order runs until a test says how it stands, or until it was stopped and asked
/// once more.
class FakeTrackExport : public TrackExport {
  public:
    void start(const ExportOrder& order) override {
        orders.push_back(order);
        current = {};
    }
    ExportState state() const override { return current; }
    void stop() override {
        ++stops;
        if (current.stage == ExportState::Stage::Running)
            current.stage = ExportState::Stage::Stopped;
    }

    ExportState current;
    int stops = 0;
    std::vector<ExportOrder> orders;
};

} // namespace velmorant::fakes
