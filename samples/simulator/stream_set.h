// The streams of a flowsheet with one unit operation: a feed for each material inlet, a product for each material outlet,
// and a collection of parameters for each energy and information port. Feeds that are not given are made up: that is the
// simulator's choice, for want of a user.
#pragma once

#include <deque>

#include "samples/component/parameter.h"
#include "samples/simulator/flowsheet_file.h"
#include "samples/simulator/unit_session.h"

namespace zelt::sample {

class StreamSet {
public:
    // Loaded feeds must fit the ports in number; null for new ones. The power is that of each energy stream, W.
    StreamSet(std::shared_ptr<Flowsheet> flowsheet, const std::vector<UnitPort>& ports, const std::vector<Feed>* feeds,
              double power);

    // Calculates the feeds' equilibria.
    void FlashFeeds() const;
    void Connect(UnitSession& unit, Report& report) const;

    // Every stream's state, which is a result.
    void Show(Report& report) const;
    // What comes in and what goes out of each compound and of energy. Throws CapeFailure when it is not the same.
    void ShowBalances(Report& report) const;

    const std::vector<Feed>& Feeds() const { return feeds; }

private:
    struct Stream {
        std::wstring name;
        bool inlet;
        Microsoft::WRL::ComPtr<ICapeThermoMaterial> material;
    };
    struct Signal {
        std::wstring name;
        bool energy;
        bool inlet;
        ParameterSet values;
        Microsoft::WRL::ComPtr<IDispatch> collection;
    };

    void AddMaterial(const UnitPort& port, const std::vector<Feed>* given);
    double Flow(const Stream& stream) const;
    // J/mol, over the phases; calculated by the material.
    double Enthalpy(const Stream& stream) const;

    std::shared_ptr<Flowsheet> flowsheet;
    std::vector<Feed> feeds;
    std::vector<Stream> streams;
    std::deque<Signal> signals;
    std::vector<Microsoft::WRL::ComPtr<IDispatch>> objects;  // one for each port, in order; null for none
    std::vector<std::wstring> names;
};

}  // namespace zelt::sample
