// Two classes whose slots stand as the table beside says, unless one of the changes that must be reported is asked for.

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
} // namespace Twin
