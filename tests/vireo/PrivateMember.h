#pragma once

namespace tavo {

// Gives tests a private member of a class. Naming it is allowed to an explicit instantiation, here in namespace tavo,
// and to nothing else:
//
//     struct Secret
//     {
//         friend auto memberOf(Secret);
//     };
//     template struct PrivateMember<Secret, &Keeper::m_Secret>;
//
//     keeper.*memberOf(Secret())
template <typename Tag, auto member>
struct PrivateMember
{
    friend auto memberOf(Tag) { return member; }
};

} // namespace tavo
