; Two elements of an array change places. Twice is as good as never, and all other elements stay.
(set-info :smt-lib-version 2.6)
(set-logic QF_AUFLIA)

(define-sort Memory () (Array Int Int))
(declare-const memory Memory)
(declare-const i Int)
(declare-const j Int)
(declare-const k Int)

(define-fun swapped ((m Memory)) Memory
  (store (store m i (select m j)) j (select m i)))

(push 1)
(set-info :status unsat)
(assert (distinct memory (swapped (swapped memory))))
(check-sat)
(pop 1)

(push 1)
(set-info :status unsat)
(assert (and (distinct k i j) (distinct (select memory k) (select (swapped memory) k))))
(check-sat)
(pop 1)

; A single swap may well change the array.
(push 1)
(set-info :status sat)
(assert (distinct memory (swapped memory)))
(check-sat)
(pop 1)
(exit)
