// SPDX-License-Identifier: MIT
#include "sum/Measure.h"

#include "sum/Inputs.h"

namespace sum {

namespace {

class Measure : public InputSink {
  public:
    void File(const Name& name) override {
        platform::EntryStatus status;
        ++amount_.files;
        if (name != "-" && platform::LookAt(name, true, status) == 0)
            amount_.bytes += status.size;
    }
    void Trouble(const Name&, const std::string&) override {} // is told when it is met again

    const Amount& Found() const { return amount_; }

  private:
    Amount amount_;
};

} // namespace

Amount AmountOfInputs(const Options& options, const std::vector<platform::FileIdentity>& ownFiles) {
    Measure measure;
    ForEachInput(options, ownFiles, measure);
    return measure.Found();
}

} // namespace sum
