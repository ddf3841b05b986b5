#include <Support/MemoryStore.h>
#include <Support/PersistStoreContract.h>

namespace Support
{
struct MemoryStoreMaker
{
    MemoryStore& Store()
    {
        return store;
    }

    MemoryStore store;
};

INSTANTIATE_TYPED_TEST_SUITE_P(MemoryStore, Persist_store, MemoryStoreMaker);
} // namespace Support
