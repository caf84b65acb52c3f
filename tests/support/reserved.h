#pragma once

/// An interface whose slots without a use do nothing. Bodies for slots that it does not
/// declare are plain functions nobody calls, so none of them says `override`.
template <class Interface>
struct Reserved : Interface {
    // NOLINTBEGIN(modernize-use-override)
    void reserved0() {}
    void reserved1() {}
    void reserved2() {}
    void reserved3() {}
    void reserved4() {}
    void reserved5() {}
    void reserved6() {}
    void reserved7() {}
    void reserved8() {}
    void reserved9() {}
    void reserved10() {}
    void reserved11() {}
    void reserved12() {}
    // NOLINTEND(modernize-use-override)

protected:
    ~Reserved() = default;
};
