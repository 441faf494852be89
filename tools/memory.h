// How the tool takes memory from the system. A big script fills a few arrays of many megabytes once, and a good part
// of its compile would go into fetching them page by page.
#pragma once

namespace tavrel::tools {

// Makes the heap grow in larger steps and keep what is freed, where the system's allocator can be told. Called once,
// first of all.
void PrepareMemory();

}  // namespace tavrel::tools
