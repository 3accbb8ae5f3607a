// The streams of a flowsheet with one unit operation: a feed for each material inlet, a product for each material outlet,
// and a collection of parameters for each energy and information port. A port that is both inlet and outlet counts as an inlet.
// Feeds that are not loaded are made up, because the simulator's user cannot specify any.
#pragma once

#include <deque>

#include "samples/component/parameter.h"
#include "samples/simulator/flowsheet_file.h"
#include "samples/simulator/unit_session.h"

namespace zelt::sample {

class StreamSet {
public:
    // `feeds` are the loaded feeds, one for each material inlet; null for new feeds. `power` (W) is the power of each energy
    // inlet.
    StreamSet(std::shared_ptr<Flowsheet> flowsheet, const std::vector<UnitPort>& ports, const std::vector<Feed>* feeds,
              double power);

    // Calculates the feeds' equilibria.
    void FlashFeeds() const;
    void Connect(UnitSession& unit, Report& report) const;

    // Prints every stream's state.
    void Show(Report& report) const;
    // Prints the inflow and outflow of each compound, of all compounds together and of energy. Throws CapeFailure when an
    // inflow and its outflow differ by more than a tolerance.
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
    // J/mol, over the present phases; calculated by the material.
    double Enthalpy(const Stream& stream) const;

    std::shared_ptr<Flowsheet> flowsheet;
    std::vector<Feed> feeds;
    std::vector<Stream> streams;
    std::deque<Signal> signals;
    std::vector<Microsoft::WRL::ComPtr<IDispatch>> objects;  // one for each port, in order; null: unconnected
    std::vector<std::wstring> names;
};

}  // namespace zelt::sample
