// The world of this example: a flat map with a few posts. It answers what a script asks, and writes down as text what a
// game would play and draw. It stands on the runtime library alone: compiled programs come from outside.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "core/script/program/program.h"
#include "core/script/runtime/vm.h"

namespace example {

// The number of each function and field of the world that a script may ask for, by its dotted name. A game that ships
// compiled programs would carry this table along with them.
using WorldNumbers = std::map<std::string, std::uint32_t>;

struct Post {
    float x = 0.0F;
    float z = 0.0F;
};

class TinyWorld : public tavrel::core::script::Host {
public:
    explicit TinyWorld(const WorldNumbers& numbers);

    // False, with a fault in the machine, for what this world does not have.
    [[nodiscard]] bool Call(tavrel::core::script::HostCall& call) override;

    std::vector<std::string> log;  // sounds and drawings, in the order in which they were asked for

private:
    using Answer = bool (TinyWorld::*)(tavrel::core::script::HostCall& call);

    bool MapName(tavrel::core::script::HostCall& call);
    bool MapObjects(tavrel::core::script::HostCall& call);
    bool MapHeight(tavrel::core::script::HostCall& call);
    bool ObjectX(tavrel::core::script::HostCall& call);
    bool ObjectY(tavrel::core::script::HostCall& call);
    bool ObjectZ(tavrel::core::script::HostCall& call);
    bool PlaySound(tavrel::core::script::HostCall& call);
    bool EmitSound(tavrel::core::script::HostCall& call);
    bool IsPlaying(tavrel::core::script::HostCall& call);
    bool DrawBox(tavrel::core::script::HostCall& call);
    bool DrawSphere(tavrel::core::script::HostCall& call);
    // The post of an object, with a fault in the machine when it is none of ours.
    const Post* PostOf(tavrel::core::script::HostCall& call);

    std::map<std::uint32_t, Answer> answers;
    std::vector<Post> posts;  // object n is entry n - 1; handle 0 is no object
    std::uint32_t voices = 0;
};

// Runs all hooks of a program in the world for so many ticks, drawing after the last one. What the script prints goes
// to the log as well. The text of the fault that stopped it; empty for none.
[[nodiscard]] std::string Play(const tavrel::core::script::Program& program, TinyWorld& world, int ticks);

}  // namespace example
