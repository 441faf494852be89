#include "examples/host/world.h"

#include "core/script/runtime/value_text.h"

namespace example {

using tavrel::core::script::HookKind;
using tavrel::core::script::HostCall;
using tavrel::core::script::Kind;
using tavrel::core::script::MakeBool;
using tavrel::core::script::MakeHandle;
using tavrel::core::script::MakeObject;
using tavrel::core::script::MakeReal;
using tavrel::core::script::Program;
using tavrel::core::script::Value;
using tavrel::core::script::ValueToText;
using tavrel::core::script::Vm;

namespace {

std::string Argument(const HostCall& call, std::uint32_t index) {
    return ValueToText(call.vm->heap, call.args[index]);
}

}  // namespace

TinyWorld::TinyWorld(const WorldNumbers& numbers) : posts{{4.0F, 0.0F}, {4.0F, 3.0F}, {0.0F, 3.0F}} {
    const std::map<std::string, Answer> named{
        {"mapa.nome", &TinyWorld::MapName},          {"mapa.objetos", &TinyWorld::MapObjects},
        {"mapa.altura", &TinyWorld::MapHeight},      {"objeto.x", &TinyWorld::ObjectX},
        {"objeto.y", &TinyWorld::ObjectY},           {"objeto.z", &TinyWorld::ObjectZ},
        {"som.tocar", &TinyWorld::PlaySound},        {"som.emitir", &TinyWorld::EmitSound},
        {"som.tocando", &TinyWorld::IsPlaying},      {"desenhar.caixa", &TinyWorld::DrawBox},
        {"desenhar.esfera", &TinyWorld::DrawSphere},
    };
    for (const auto& [name, answer] : named) answers[numbers.at(name)] = answer;
}

bool TinyWorld::Call(HostCall& call) {
    const auto found = answers.find(call.function);
    if (found != answers.end()) return (this->*found->second)(call);
    call.vm->Fail("este mundo nao tem a funcao " + std::to_string(call.function));
    return false;
}

bool TinyWorld::MapName(HostCall& call) {
    call.result = MakeObject(Kind::Text, static_cast<std::uint32_t>(call.vm->heap.NewText("praca")));
    return true;
}

bool TinyWorld::MapObjects(HostCall& call) {
    std::vector<Value> objects;
    for (std::uint32_t i = 1; i <= posts.size(); ++i) objects.push_back(MakeHandle(Kind::Object, i));
    call.result = call.vm->NewList(objects.data(), static_cast<int>(objects.size()));
    return call.result.kind == Kind::List;
}

bool TinyWorld::MapHeight(HostCall& call) {
    call.result = MakeReal(0.0F);  // the map is flat
    return true;
}

const Post* TinyWorld::PostOf(HostCall& call) {
    const std::uint32_t object = call.args[0].Handle();
    if (object >= 1 && object <= posts.size()) return &posts[object - 1];
    call.vm->Fail("o objeto " + std::to_string(object) + " nao existe");
    return nullptr;
}

bool TinyWorld::ObjectX(HostCall& call) {
    const Post* post = PostOf(call);
    if (post != nullptr) call.result = MakeReal(post->x);
    return post != nullptr;
}

bool TinyWorld::ObjectY(HostCall& call) {
    call.result = MakeReal(0.0F);
    return PostOf(call) != nullptr;
}

bool TinyWorld::ObjectZ(HostCall& call) {
    const Post* post = PostOf(call);
    if (post != nullptr) call.result = MakeReal(post->z);
    return post != nullptr;
}

bool TinyWorld::PlaySound(HostCall& call) {
    log.push_back("tocar " + Argument(call, 0) + " volume " + Argument(call, 1));
    call.result = MakeHandle(Kind::Sound, ++voices);
    return true;
}

bool TinyWorld::EmitSound(HostCall& call) {
    log.push_back("emitir " + Argument(call, 1) + " volume " + Argument(call, 2));
    call.result = MakeHandle(Kind::Sound, ++voices);
    return true;
}

bool TinyWorld::IsPlaying(HostCall& call) {
    call.result = MakeBool(call.args[0].Handle() != 0);  // nothing ever stops here
    return true;
}

bool TinyWorld::DrawBox(HostCall& call) {
    log.push_back("caixa em " + Argument(call, 0) + " tamanho " + Argument(call, 1) + " " + Argument(call, 2));
    return true;
}

bool TinyWorld::DrawSphere(HostCall& call) {
    log.push_back("esfera em " + Argument(call, 0) + " raio " + Argument(call, 1) + " " + Argument(call, 2));
    return true;
}

std::string Play(const Program& program, TinyWorld& world, int ticks) {
    Vm vm(program);
    vm.host = &world;
    vm.print = [&world](const std::string& text) { world.log.push_back("escreva " + text); };
    vm.SeedRandom(1, 0);
    const Value step = MakeReal(1.0F / 60.0F);
    bool good = vm.Start() && vm.RunHook(HookKind::Start, nullptr, 0);
    for (int i = 0; i < ticks && good; ++i) {
        good = vm.RunHook(HookKind::Tick, &step, 1) && vm.RunHook(HookKind::Frame, &step, 1);
    }
    const Value time = MakeReal(static_cast<float>(ticks) / 60.0F);
    good = good && vm.RunHook(HookKind::Draw, &time, 1) && vm.RunHook(HookKind::Shutdown, nullptr, 0);
    return good ? "" : vm.DescribeFault();
}

}  // namespace example
