// The sample core's own data and its undo steps: a counter and a list of
// notes, each edit one step handed to the adaptor. The core owns its steps;
// the adaptor runs them backwards and forwards as the user undoes and redoes.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "core_api/cundo.h"

namespace tvr::plr::core::sample {

class UndoBook;

// One edit: adds `delta` to the counter, or appends `note` to the notes.
class CoreStep final : public CUndo {
public:
    CoreStep(UndoBook& book, long long delta, std::string note) : book_(book), delta_(delta), note_(std::move(note)) {}
    int undo(bool full) override;
    int redo() override;
    // The book owns its steps; the adaptor never asks it to release one.
    void release() override {}

    void apply();
    std::string what() const;
    bool applied() const { return applied_; }

private:
    UndoBook& book_;
    long long delta_;
    std::string note_;
    bool applied_ = false;
};

class UndoBook {
public:
    long long counter = 0;
    std::vector<std::string> notes;

    // A new step, applied; the book keeps it until the core goes.
    CoreStep* add(long long delta, const std::string& note);
    // "counter N", the notes, then every step with whether it is applied.
    std::string describe() const;

private:
    std::vector<std::unique_ptr<CoreStep>> steps_;
};

}  // namespace tvr::plr::core::sample
