#pragma once

#include <string>

/// A condition on a version: clauses joined by "&&", each a variable, an operator
/// (">=", ">", "<=", "<", "==") and a version in quotes, without blanks:
/// %appver%>="1.0.0.1"&&%appver%<"2.0.0.0". Parsed once, then only read; check on any
/// thread. Held by the shared pointer that made it.
class IXMaterialCheck {
public:
    /// -1 for an empty expression, else 0: clauses that cannot be read are passed over.
    virtual int parse(const std::string& expression) = 0;
    /// Whether the variable's value at this moment is within the bounds; yes when there
    /// are none.
    virtual bool check() = 0;

protected:
    ~IXMaterialCheck() = default;
};

class XMaterialCheck : public IXMaterialCheck {
public:
    int parse(const std::string& expression) override;
    bool check() override;

protected:
    ~XMaterialCheck() = default;

private:
    enum Op { none = 0, greater = 1, greaterEqual = 2, equal = 3, lessEqual = 4, less = 5 };

    virtual std::string _getTag() = 0; ///< the variable; clauses on another one are ignored
    virtual std::string _getCurVersion() = 0;

    void _parseClause(const std::string& clause);
    void _setBound(const std::string& op, const std::string& version);

    // One bound a side; a later clause of the side replaces it. "==" is of the high side.
    std::string lowVersion;
    std::string highVersion;
    Op lowOp = none;
    Op highOp = none;
};

/// On the client's version.
class XMaterialAppVerCheck : public XMaterialCheck {
public:
    virtual ~XMaterialAppVerCheck() = default;

private:
    std::string _getTag() override;
    std::string _getCurVersion() override;
};

/// On the operating system's version, in three parts.
class XMaterialSysVerCheck : public XMaterialCheck {
public:
    virtual ~XMaterialSysVerCheck() = default;

private:
    std::string _getTag() override;
    std::string _getCurVersion() override;
};
