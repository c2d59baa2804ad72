#include "stream/TypeNames.h"
#include "tests/stream/Probes.h"
#include "tests/stream/SampleObjects.h"

class XPDib {};
template <class... Arguments>
struct Holder {};
template <int Size, bool Flag, char Letter>
struct Shape {};
enum class Tint { Red, Green };
template <Tint Value, unsigned long long Limit>
struct Tinted {};
namespace Outer {
struct Inner {
    struct Deep {};
};
} // namespace Outer
namespace {
struct Hidden {};

// Throws while it is assigned.
class Stubborn : public SampleObject {
public:
    Stubborn() = default;
    Stubborn(const Stubborn&) = default;
    Stubborn& operator=(const Stubborn& other) {
        SampleObject::operator=(other);
        throw 1;
    }
};

template <class Type>
std::string NameOf() {
    return kel::NormalTypeName(typeid(Type));
}

} // namespace

TEST_CASE("identifiers are the stated hash of a name") {
    const SampleFactory factory;
    const auto id = [&factory](const auto& name) {
        return static_cast<unsigned>(static_cast<const IObjectFactory&>(factory).GetClassID(name));
    };
    CHECK((id("") == 0 && id("AB") == 0x101 && id("\xE9") == static_cast<unsigned>(-23)));
    CHECK((id("XPDib") == 0x1E75 && id(typeid(XPDib)) == 0x1E75));
}

TEST_CASE("type names have one spelling on every compiler") {
    const std::pair<std::string, const char*> rows[] = {
        {NameOf<Outer::Inner::Deep>(), "Outer::Inner::Deep"},
        {NameOf<Hidden>(), "(anonymous namespace)::Hidden"},
        {NameOf<Holder<int, char>>(), "Holder<int,char>"},
        {NameOf<Holder<Holder<Holder<XPDib, long long>>, unsigned long long>>(),
         "Holder<Holder<Holder<XPDib,__int64> >,unsigned __int64>"},
        {NameOf<Holder<const char*, int**, unsigned short&>>(), "Holder<char const *,int * *,unsigned short &>"},
        {NameOf<Holder<NarrowString>>(),
         "Holder<std::basic_string<char,std::char_traits<char>,std::allocator<char> > >"},
        {NameOf<Shape<-3, true, 'a'>>(), "Shape<-3,1,97>"},
        {NameOf<Tinted<Tint::Green, 7>>(), "Tinted<1,7>"},
        {"struct Pair<class A, struct B<union C>>", "Pair<A,B<union C> >"},
        {"strstruct uct A", "A"},
        {"Wrap2<3ul,x4u,-5LL>", "Wrap2<3,x4u,-5>"},
        {"F<`anonymous namespace'::T>", "F<(anonymous namespace)::T>"},
        {"truetype<falsehood,false>", "truetype<falsehood,0>"},
    };
    for (const auto& [name, expected] : rows)
        CHECK(kel::NormaliseTypeName(name) == expected);
    CHECK((kel::PlainTypeName("1A", "A", 0) == "A" && kel::PlainTypeName("class A", nullptr, -2) == "class A"));
    // Without memory there is no name, rather than another one.
    CHECK_THROWS_AS(kel::PlainTypeName("1A", nullptr, -1), std::bad_alloc);
}

TEST_CASE("a registered class is created by type, name and identifier, any other gives null") {
    SampleFactory factory;
    IUnknown* const objects[] = {factory.CreateObject(typeid(SampleNode)), factory.CreateObject("SampleNode"),
                                 factory.CreateObject(factory.GetClassID("SampleNode"))};
    for (IUnknown* object : objects)
        CHECK((dynamic_cast<SampleNode*>(object) != nullptr && object->Release() == 0));
    CHECK((!factory.CreateObject(typeid(XPDib)) && !factory.CreateObject("SampleNod") && !factory.CreateObject(12345)));
    CHECK(factory.GetObjectFactoryObjectFunctions(12345) == nullptr);
}

TEST_CASE("a later registration under a name replaces the earlier one") {
    ObjectFactory factory;
    factory.RegisterType<SampleNode>(false, "Thing");
    factory.RegisterType<SampleCaption>(true, "Thing");
    const auto* functions = factory.GetObjectFactoryObjectFunctions(factory.GetClassID("Thing"));
    REQUIRE(functions != nullptr);
    CHECK(functions->ShareEqualObjects());
    CHECK(factory.CreateObject(typeid(SampleCaption)) == nullptr);
    CHECK_THROWS_AS(factory.RegisterType<SampleNode>(true), std::logic_error);
    CHECK(SampleObject::Alive().empty());
}

TEST_CASE("clones start with one reference and assigned objects keep theirs") {
    SampleFactory factory;
    const auto* functions = factory.GetObjectFactoryObjectFunctions(factory.GetClassID("SampleCaption"));
    REQUIRE(functions != nullptr);
    auto* source = new SampleCaption;
    source->text = "text";
    source->AddRef();
    source->AddRef();
    IUnknown* const clone = functions->Clone(source);
    auto* const target = dynamic_cast<SampleCaption*>(clone);
    REQUIRE(target != nullptr);
    CHECK(target->Count() == 1);
    CHECK(functions->Equals(source, clone));
    target->text = "other";
    CHECK_FALSE(functions->Equals(source, clone));
    for (const unsigned count : {1u, 2u, 5u}) {
        while (target->Count() < count)
            target->AddRef();
        functions->Assign(source, clone);
        CHECK((target->Count() == count && source->Count() == 3));
    }
    CHECK(target->text == "text");
    SampleObject::EndAll();

    const kel::ObjectFunctions<Stubborn> stubborn(false);
    Stubborn from, to;
    from.AddRef();
    CHECK_THROWS_AS(stubborn.Assign(&from, &to), int);
    CHECK(to.Count() == 1);
}
