// Which records contain themselves through plain fields, in time that a hostile script cannot drive up.
//
// The language says: walk down the plain record fields of a record, each record once, and it contains itself when the
// walk meets it again or gets 65 levels deep. A walk for each record would be quadratic. So one pass of Tarjan's
// algorithm finds the records in cycles, whose walk always comes back, and a bound on how deep any walk can get; only
// records outside of cycles whose bound passes the limit are walked, and all walks together have a budget.
#include "core/script/compiler/declare/record_cycles.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace tavrel::core::script {

namespace {

// A chain of plain record fields this long counts as a cycle.
constexpr std::int32_t MaxRecordChain = 65;

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
    [[nodiscard]] bool MayRunDeep(std::size_t record) const { return bound[record] > MaxRecordChain; }

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
    [[nodiscard]] bool Exhausted() const { return steps > MaxSteps; }

private:
    static constexpr std::int64_t MaxSteps = std::int64_t{1} << 24;

    bool RunsDeep(std::int32_t record, std::int32_t walk, std::int32_t depth) {
        if (depth == MaxRecordChain) return true;
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

// The records that stand in plain fields of a record, in field order.
std::vector<std::int32_t> DirectRecords(const TypeTable& types, const RecordInfo& record) {
    std::vector<std::int32_t> direct;
    for (TypeId type : record.fieldTypes) {
        if (types.KindOf(type) == Kind::Record) direct.push_back(types.At(type).index);
    }
    return direct;
}

}  // namespace

void CheckRecordsContainThemselves(Compiler& compiler) {
    const Program& program = compiler.program;
    Graph graph;
    for (const RecordInfo& record : program.records) graph.push_back(DirectRecords(program.types, record));
    RecordShapes shapes(graph);
    DeepWalks walks(graph);
    for (std::size_t i = 0; i < graph.size() && !compiler.diagnostics.Full(); ++i) {
        bool contains = shapes.InCycle(i) || (shapes.MayRunDeep(i) && walks.RunsDeep(static_cast<std::int32_t>(i)));
        if (walks.Exhausted()) {
            compiler.Error(compiler.Main(), {}, "ha registros demais uns dentro dos outros para conferir",
                           "guarde-os em listas, ou declare menos campos de registros");
            return;
        }
        if (!contains) continue;
        compiler.Error(compiler.Main(), {}, "o registro " + Quoted(program.records[i].name) + " contem a si mesmo",
                       "ele pode conter uma \"lista de\" si mesmo, que comeca vazia");
    }
}

}  // namespace tavrel::core::script
