#include "util/singleton.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "util/log.h"

namespace tvr::util {
namespace {

std::vector<std::string> g_destroyed;
std::size_t g_collectorSizeAtLastDestruction = 0;

SingletonReference* refOf(SingletonCollector* c) { return c; }

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
        g_collectorSizeAtLastDestruction = SingletonCollector::instance()->size();
    }
};

// Singleton<T> as the second base, after another polymorphic class with data.
class OtherInterface {
public:
    virtual ~OtherInterface() = default;
    virtual int answer() const { return 42; }
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
        if (failConstruction) {
            throw std::runtime_error("construction failed");
        }
    }
    static void* operator new(std::size_t size, const std::nothrow_t& tag) noexcept {
        return failAllocation ? nullptr : ::operator new(size, tag);
    }
    static void operator delete(void* p) noexcept { ::operator delete(p); }
    static void operator delete(void* p, const std::nothrow_t& tag) noexcept { ::operator delete(p, tag); }

    static inline bool failConstruction = false;
    static inline bool failAllocation = false;
};

class Dummy : public SingletonReference {
public:
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

TEST_F(SingletonTest, CollectorComesFirstAndDestructionIsReverseWithCollectorLast) {
    Log* log = Log::instance();
    SingletonCollector* collector = SingletonCollector::instance();
    ASSERT_EQ(collector->size(), 2u);
    EXPECT_EQ(collector->at(0), refOf(collector));
    EXPECT_EQ(collector->at(1), refOf(log));

    Alpha* alpha = Alpha::instance();
    Beta* beta = Beta::instance();
    EXPECT_EQ(Alpha::instance(), alpha);
    ASSERT_EQ(collector->size(), 4u);
    EXPECT_EQ(collector->at(2), refOf(alpha));
    EXPECT_EQ(collector->at(3), refOf(beta));
    EXPECT_EQ(collector->at(4), nullptr);

    collector->destroyAll();
    EXPECT_EQ(g_destroyed, (std::vector<std::string>{"Beta", "Alpha"}));
    // Beta went first, while everything (itself included) was still registered.
    EXPECT_EQ(g_collectorSizeAtLastDestruction, 4u);

    // Later use builds fresh instances under a fresh collector.
    Alpha* again = Alpha::instance();
    ASSERT_NE(again, nullptr);
    SingletonCollector* fresh = SingletonCollector::instance();
    ASSERT_EQ(fresh->size(), 2u);
    EXPECT_EQ(fresh->at(0), refOf(fresh));
    EXPECT_EQ(fresh->at(1), refOf(again));
}

TEST_F(SingletonTest, CollectorIsDestroyedAfterEveryOtherInstance) {
    Beta::instance();
    Alpha::instance();
    SingletonCollector::instance()->destroyAll();
    EXPECT_EQ(g_destroyed, (std::vector<std::string>{"Alpha", "Beta"}));
    // When Beta, the first registered, died only it and the collector were left.
    EXPECT_EQ(g_collectorSizeAtLastDestruction, 2u);
}

TEST_F(SingletonTest, SecondBaseRegistersItsSingletonPart) {
    SecondBase* object = SecondBase::instance();
    ASSERT_NE(object, nullptr);
    SingletonCollector* collector = SingletonCollector::instance();
    ASSERT_EQ(collector->size(), 2u);
    EXPECT_EQ(collector->at(1), refOf(object));
    EXPECT_NE(static_cast<const void*>(collector->at(1)), static_cast<const void*>(object));
    EXPECT_EQ(object->answer(), 42);

    collector->destroyAll();
    EXPECT_EQ(g_destroyed, (std::vector<std::string>{"SecondBase"}));
    EXPECT_NE(SecondBase::instance(), nullptr);
}

TEST_F(SingletonTest, DestroyInstanceActsOnTheClassInstanceNotOnItsObject) {
    Alpha local;
    local.destroyInstance();  // no instance yet: nothing to delete
    EXPECT_TRUE(g_destroyed.empty());

    Alpha* shared = Alpha::instance();
    ASSERT_NE(shared, &local);
    local.destroyInstance();
    EXPECT_EQ(g_destroyed, (std::vector<std::string>{"Alpha"}));
    EXPECT_EQ(SingletonCollector::instance()->size(), 1u);
    local.destroyInstance();
    EXPECT_EQ(g_destroyed.size(), 1u);

    // Deleting the instance directly also unregisters it and clears the pointer.
    Alpha* next = Alpha::instance();
    delete next;
    EXPECT_EQ(SingletonCollector::instance()->size(), 1u);
    EXPECT_NE(Alpha::instance(), nullptr);
}

TEST_F(SingletonTest, RemoveErasesEveryOccurrenceAndKeepsOrder) {
    SingletonCollector* collector = SingletonCollector::instance();
    Dummy a;
    Dummy b;
    collector->add(&a);
    collector->add(&b);
    collector->add(&a);
    ASSERT_EQ(collector->size(), 4u);
    collector->remove(&a);
    ASSERT_EQ(collector->size(), 2u);
    EXPECT_EQ(collector->at(0), refOf(collector));
    EXPECT_EQ(collector->at(1), &b);
    Dummy unknown;
    collector->remove(&unknown);
    EXPECT_EQ(collector->size(), 2u);
    // A reference whose destroyInstance does not unregister it must not stall destroyAll.
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
    EXPECT_EQ(SingletonCollector::instance()->size(), 2u);
}

}  // namespace
}  // namespace tvr::util
