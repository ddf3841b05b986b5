// Classes whose slots stand as the table beside says, unless one of the changes that must be reported is asked for.

namespace Twin
{
class IShape
{
public:
#if defined(SWAPPED_SLOTS)
    virtual void Stop() = 0;
    virtual void Start() = 0;
#else
    virtual void Start() = 0;
    virtual void Stop() = 0;
#endif
    virtual ~IShape() = default;
};

class Shape : public IShape
{
public:
    void Start() override;
#if !defined(MISSING_BODY)
    void Stop() override;
#endif
    ~Shape() override;
    virtual double Area();
#if defined(EXTRA_SLOT)
    virtual double Length();
#endif
};

class ISized
{
public:
#if defined(SWAPPED_SECOND_TABLE)
    virtual double Height() = 0;
    virtual double Width() = 0;
#else
    virtual double Width() = 0;
    virtual double Height() = 0;
#endif
    virtual ~ISized() = default;
};

class Crate : public Shape, public ISized
{
public:
    double Width() override;
    double Height() override;
    ~Crate() override;
};
} // namespace Twin
