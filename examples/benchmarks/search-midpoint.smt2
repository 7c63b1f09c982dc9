; The middle of a range in a binary search. (low + high) / 2 overflows when both bounds are large;
; low + (high - low) / 2 does not.
(set-info :smt-lib-version 2.6)
(set-logic QF_BV)

(declare-const low (_ BitVec 32))
(declare-const high (_ BitVec 32))

; A range of indices: signed, not negative, not empty.
(assert (bvsle #x00000000 low))
(assert (bvslt low high))

(define-fun within-range ((middle (_ BitVec 32))) Bool
  (and (bvsle low middle) (bvslt middle high)))

; Can the plain middle fall out of the range? Yes.
(push 1)
(set-info :status sat)
(assert (not (within-range (bvsdiv (bvadd low high) #x00000002))))
(check-sat)
(pop 1)

; Can the careful one? No.
(push 1)
(set-info :status unsat)
(assert (not (within-range (bvadd low (bvsdiv (bvsub high low) #x00000002)))))
(check-sat)
(pop 1)
(exit)
