-- SPDX-License-Identifier: Apache-2.0
-- Further queries of `orvale check`, written as in links.sql.

--! ESAME_OB: più schede delle allergie di un paziente (cod_paz)
SELECT cod_paz FROM ESAME_OB WHERE tipo_dati = 'X' GROUP BY cod_paz HAVING count(*) > 1 ORDER BY cod_paz;

--! ESAME_OB: più schede delle malattie infettive di un paziente (cod_paz)
SELECT cod_paz FROM ESAME_OB WHERE tipo_dati = 'M' GROUP BY cod_paz HAVING count(*) > 1 ORDER BY cod_paz;

-- An empty code string is a form that was never filled in.
--! ESAME_OB: allergie non lunghe 230 caratteri (cod_paz)
SELECT cod_paz FROM ESAME_OB WHERE tipo_dati = 'X' AND trim(dati_paz) <> '' AND len(dati_paz) <> 230
ORDER BY cod_paz;

--! ESAME_OB: malattie infettive non lunghe 190 caratteri (cod_paz)
SELECT cod_paz FROM ESAME_OB WHERE tipo_dati = 'M' AND trim(dati_paz) <> '' AND len(dati_paz) <> 190
ORDER BY cod_paz;

--! PROBLEMS: problemi di stato sconosciuto (idProblems)
SELECT idProblems FROM PROBLEMS WHERE isnull(stato_probl) OR stato_probl < 0 OR stato_probl > 3
ORDER BY idProblems;
