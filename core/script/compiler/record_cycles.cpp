// Records that contain themselves through plain fields. A list or a dictionary breaks a cycle.
#include <algorithm>
#include <utility>

#include "core/script/compiler/compiler.h"

namespace tavrel::core::script {

namespace {

// A chain of plain record fields this long counts as a cycle.
constexpr std::int32_t DeepestRecordChain = 65;

using Graph = std::vector<std::vector<std::int32_t>>;  // the records in plain fields of each record

// What one pass over the graph tells of every record: whether it stands in a cycle, and a bound on how long a chain
// of records from it can get. Tarjan's algorithm for strongly connected components, on a stack of its own.
class RecordShapes {
public:
    explicit RecordShapes(const Graph& records)
        : graph(records),
          order(records.size(), 0),
          low(records.size(), 0),
          bound(records.size(), 0),
          inCycle(records.size(), false),
          open(records.size(), false) {
        for (std::size_t record = 0; record < graph.size(); ++record) {
            if (order[record] == 0) Walk(record);
        }
    }

    [[nodiscard]] bool InCycle(std::size_t record) const { return inCycle[record]; }
    [[nodiscard]] bool MayRunDeep(std::size_t record) const { return bound[record] > DeepestRecordChain; }

private:
    struct Visit {
        std::size_t record;
        std::size_t next;  // into the inner records
    };

    void Enter(std::size_t record) {
        order[record] = low[record] = ++entered;
        open[record] = true;
        members.push_back(record);
        path.push_back({record, 0});
    }

    void Walk(std::size_t root) {
        Enter(root);
        while (!path.empty()) {
            Visit& visit = path.back();
            std::size_t record = visit.record;
            if (visit.next == graph[record].size()) {
                path.pop_back();
                if (!path.empty()) low[path.back().record] = std::min(low[path.back().record], low[record]);
                if (low[record] == order[record]) CloseComponent(record);
                continue;
            }
            auto inner = static_cast<std::size_t>(graph[record][visit.next++]);
            if (order[inner] == 0) {
                Enter(inner);
            } else if (open[inner]) {
                low[record] = std::min(low[record], order[inner]);
                inCycle[record] = inCycle[record] || inner == record;
            }
        }
    }

    // A chain passes at most once through each member of a component, and then leaves it for good.
    void CloseComponent(std::size_t root) {
        auto first = std::find(members.rbegin(), members.rend(), root).base() - 1;
        std::int64_t size = members.end() - first;
        std::int64_t longest = 0;
        for (auto member = first; member != members.end(); ++member) {
            open[*member] = false;
            for (std::int32_t inner : graph[*member]) {
                longest = std::max(longest, bound[static_cast<std::size_t>(inner)]);
            }
        }
        for (auto member = first; member != members.end(); ++member) {
            bound[*member] = size + longest;
            inCycle[*member] = inCycle[*member] || size > 1;
        }
        members.erase(first, members.end());
    }

    const Graph& graph;
    std::vector<std::int64_t> order;  // in which records were entered, from 1; 0 for one not seen
    std::vector<std::int64_t> low;    // the first entered of those that a record comes back to
    std::vector<std::int64_t> bound;  // records in the longest chain, at the most; 0 while the component is open
    std::vector<bool> inCycle;
    std::vector<bool> open;            // in a component that is not closed yet
    std::vector<std::size_t> members;  // of the open components
    std::vector<Visit> path;
    std::int64_t entered = 0;
};

// The walks that go down from a record, each record once, up to the depth that counts as a cycle.
class DeepWalks {
public:
    explicit DeepWalks(const Graph& records) : graph(records), lastMet(records.size(), -1) {}

    [[nodiscard]] bool RunsDeep(std::int32_t record) { return RunsDeep(record, record, 0); }

    // The outcome of a walk depends on the order of fields, so walks share nothing, and a script made for it could ask
    // for as many as it has records, each over all of them.
    [[nodiscard]] bool Exhausted() const { return steps > MostSteps; }

private:
    static constexpr std::int64_t MostSteps = std::int64_t{1} << 24;

    bool RunsDeep(std::int32_t record, std::int32_t walk, std::int32_t depth) {
        if (depth == DeepestRecordChain) return true;
        for (std::int32_t inner : graph[static_cast<std::size_t>(record)]) {
            ++steps;
            if (std::exchange(lastMet[static_cast<std::size_t>(inner)], walk) == walk) continue;
            if (RunsDeep(inner, walk, depth + 1)) return true;
        }
        return false;
    }

    const Graph& graph;
    std::vector<std::int32_t> lastMet;  // the walk that met each record last
    std::int64_t steps = 0;
};

}  // namespace

// The walk of a record in a cycle always finds it again, so only the others need one, and only where it may run deep.
void Compiler::CheckRecordsContainThemselves() {
    Graph graph;
    for (const RecordInfo& record : program->records) graph.push_back(DirectRecords(record));
    RecordShapes shapes(graph);
    DeepWalks walks(graph);
    for (std::size_t i = 0; i < graph.size() && !diagnostics->Full(); ++i) {
        bool contains = shapes.InCycle(i) || (shapes.MayRunDeep(i) && walks.RunsDeep(static_cast<std::int32_t>(i)));
        if (walks.Exhausted()) {
            Error(units[0], {}, "ha registros demais uns dentro dos outros para conferir",
                  "guarde-os em listas, ou declare menos campos de registros");
            return;
        }
        if (!contains) continue;
        Error(units[0], {}, "o registro " + Quoted(program->records[i].name) + " contem a si mesmo",
              "ele pode conter uma \"lista de\" si mesmo, que comeca vazia");
    }
}

// The records that stand in plain fields of a record, in field order.
std::vector<std::int32_t> Compiler::DirectRecords(const RecordInfo& record) const {
    std::vector<std::int32_t> direct;
    for (TypeId type : record.fieldTypes) {
        if (KindOf(type) == Kind::Record) direct.push_back(program->types.At(type).index);
    }
    return direct;
}

}  // namespace tavrel::core::script
