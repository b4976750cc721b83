#include "util/singleton.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "util/log.h"

namespace tvr::util {
namespace {

std::vector<std::string> g_destroyed;
std::size_t g_registeredWhenBetaDied = 0;

template <class T>
SingletonReference* refOf(T* t) {
    return static_cast<Singleton<T>*>(t);
}

class Alpha : public Singleton<Alpha> {
public:
    ~Alpha() override { g_destroyed.push_back("Alpha"); }
};

class Beta : public Singleton<Beta> {
public:
    ~Beta() override {
        g_destroyed.push_back("Beta");
        g_registeredWhenBetaDied = SingletonCollector::instance()->size();
    }
};

// Singleton<T> as the second base, after another polymorphic class with data.
struct OtherInterface {
    virtual ~OtherInterface() = default;
    double payload[3] = {1, 2, 3};
};
class SecondBase : public OtherInterface, public Singleton<SecondBase> {
public:
    ~SecondBase() override { g_destroyed.push_back("SecondBase"); }
    std::vector<int> data = std::vector<int>(100, 7);
};

class Flaky : public Singleton<Flaky> {
public:
    Flaky() {
        if (failConstruction) throw std::runtime_error("construction failed");
    }
    static void* operator new(std::size_t size, const std::nothrow_t& tag) noexcept {
        return failAllocation ? nullptr : ::operator new(size, tag);
    }
    // The placement form frees the memory when the constructor throws.
    static void operator delete(void* p) noexcept { ::operator delete(p); }
    static void operator delete(void* p, const std::nothrow_t& tag) noexcept { ::operator delete(p, tag); }
    static inline bool failConstruction = false, failAllocation = false;
};

// A reference whose destroyInstance leaves it registered.
struct Dummy : SingletonReference {
    void destroyInstance() override {}
};

class SingletonTest : public ::testing::Test {
protected:
    void SetUp() override {
        SingletonCollector::instance()->destroyAll();
        g_destroyed.clear();
    }
    void TearDown() override { SingletonCollector::instance()->destroyAll(); }
};

std::vector<SingletonReference*> registered() {
    std::vector<SingletonReference*> refs;
    for (std::size_t i = 0; i < SingletonCollector::instance()->size(); ++i)
        refs.push_back(SingletonCollector::instance()->at(i));
    return refs;
}

TEST_F(SingletonTest, ReverseDestructionCollectorLastAndRecreation) {
    Beta* beta = Beta::instance();
    Log* log = Log::instance();
    SecondBase* second = SecondBase::instance();
    Alpha* alpha = Alpha::instance();
    SingletonCollector* collector = SingletonCollector::instance();
    EXPECT_EQ(registered(), (std::vector<SingletonReference*>{refOf(collector), refOf(beta), refOf(log),
                                                               refOf(second), refOf(alpha)}));
    // A second base is registered by its Singleton part, not the object start.
    EXPECT_NE(static_cast<const void*>(refOf(second)), static_cast<const void*>(second));

    collector->destroyAll();
    EXPECT_EQ(g_destroyed, (std::vector<std::string>{"Alpha", "SecondBase", "Beta"}));
    EXPECT_EQ(g_registeredWhenBetaDied, 2u);  // only Beta and the collector were left

    Alpha* again = Alpha::instance();
    SingletonCollector* fresh = SingletonCollector::instance();
    EXPECT_EQ(registered(), (std::vector<SingletonReference*>{refOf(fresh), refOf(again)}));
}

TEST_F(SingletonTest, DestroyInstanceActsOnTheClassInstanceNotOnItsObject) {
    Alpha local;
    local.destroyInstance();  // no instance yet
    EXPECT_TRUE(g_destroyed.empty());
    Alpha::instance();
    local.destroyInstance();
    EXPECT_EQ(g_destroyed, (std::vector<std::string>{"Alpha"}));
    EXPECT_EQ(SingletonCollector::instance()->size(), 1u);
}

TEST_F(SingletonTest, RemoveErasesEveryOccurrence) {
    SingletonCollector* collector = SingletonCollector::instance();
    Dummy a, b, unknown;
    collector->add(&a);
    collector->add(&b);
    collector->add(&a);
    collector->remove(&a);
    collector->remove(&unknown);
    ASSERT_EQ(collector->size(), 2u);
    EXPECT_EQ(collector->at(1), &b);
    // b's destroyInstance does not unregister it; destroyAll must still end.
    collector->destroyAll();
    EXPECT_EQ(SingletonCollector::instance()->size(), 1u);
}

TEST_F(SingletonTest, FailedCreationLeavesNoInstanceAndRetries) {
    Flaky::failAllocation = true;
    EXPECT_EQ(Flaky::instance(), nullptr);
    Flaky::failAllocation = false;
    Flaky::failConstruction = true;
    EXPECT_THROW(Flaky::instance(), std::runtime_error);
    Flaky::failConstruction = false;
    EXPECT_EQ(SingletonCollector::instance()->size(), 1u);
    Flaky* made = Flaky::instance();
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(Flaky::instance(), made);
}

}  // namespace
}  // namespace tvr::util
